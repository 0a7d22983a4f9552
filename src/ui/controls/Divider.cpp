#include "ui/controls/Divider.h"

#include <QPainter>

#include "ui/Theme.h"

namespace quiverly {

Divider::Divider() {
    setFixedHeight(1);
}

void Divider::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), Theme::current().colors().divider);
}

} // namespace quiverly
