#pragma once

class QWidget;

namespace quiverly {

// Makes a visible change of a widget fade in, for a quarter of a second. Call it before the change. Does nothing for
// users who want no motion.
void crossFade(QWidget& widget);

} // namespace quiverly
