#pragma once

class QWidget;

namespace quiverly {

// Lets what a widget shows now fade, in a quarter of a second, into what it shows next. Call before the change.
void crossFade(QWidget& widget);

} // namespace quiverly
