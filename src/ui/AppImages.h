#pragma once

#include <QImage>

namespace quiverly {

// The application's image for the main view's header and for the welcome: the first of its files that loads, or null.
QImage headerLogo();
QImage welcomeLogo();

} // namespace quiverly
