#include "ui/controls/ScrollArea.h"

namespace quiverly {

ScrollArea::ScrollArea(QWidget* content) {
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    setWidgetResizable(true);
    setWidget(content);
}

} // namespace quiverly
