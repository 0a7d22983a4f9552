#pragma once

#include <string>
#include <string_view>

namespace quiverly {

// The bytes as UTF-8. Those that are not become U+FFFD, one for each maximal subpart, as the Unicode standard
// recommends.
std::string validUtf8(std::string_view bytes);

} // namespace quiverly
