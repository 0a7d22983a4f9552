#pragma once

#include <QImage>

namespace quiverly {

// The application's logo for the header of the main view, and for the welcome: the first of its files that can be
// loaded, or null.
QImage headerLogo();
QImage welcomeLogo();

} // namespace quiverly
