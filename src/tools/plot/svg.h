#pragma once

#include <string>

#include "tools/plot/Plot.h"

namespace quiverly {

// The plot as an SVG document, light or dark as whatever shows it. A long recording takes several rows.
std::string svg(const Plot& plot);

} // namespace quiverly
