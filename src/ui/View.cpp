#include "ui/View.h"

#include <QHideEvent>
#include <QShowEvent>

namespace quiverly {

void View::showEvent(QShowEvent* event) {
    if (!event->spontaneous() && onAppear) onAppear();
}

void View::hideEvent(QHideEvent* event) {
    if (!event->spontaneous() && onDisappear) onDisappear();
}

} // namespace quiverly
