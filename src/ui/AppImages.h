#pragma once

#include <QIcon>
#include <QImage>

namespace quiverly {

// The application's logo for the header of the main view, and for the welcome: the first of its files that can be
// loaded, or null.
QImage headerLogo();
QImage welcomeLogo();

// The logo in the sizes that desktops use for a window, or null.
QIcon windowIcon();

} // namespace quiverly
