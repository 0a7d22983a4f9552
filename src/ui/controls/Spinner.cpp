#include "ui/controls/Spinner.h"

#include <QPainter>

#include "ui/Theme.h"

namespace quiverly {

namespace {
constexpr int spokes = 8;
constexpr int stepTime = 120; // milliseconds
} // namespace

Spinner::Spinner() {
    connect(&Theme::current(), &Theme::changed, this, [this] {
        if (isVisible()) turn();
    });
}

void Spinner::turn() {
    if (Theme::current().reducesMotion()) {
        timer.stop();
    } else {
        timer.start(stepTime, this);
    }
}

void Spinner::showEvent(QShowEvent*) {
    turn();
}

void Spinner::hideEvent(QHideEvent*) {
    timer.stop();
}

void Spinner::timerEvent(QTimerEvent*) {
    step = (step + 1) % spokes;
    update();
}

void Spinner::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(width() / 2.0, height() / 2.0);
    painter.scale(width() / 16.0, height() / 16.0);
    painter.rotate(45.0 * step);
    QColor color = Theme::current().colors().primary;
    for (int spoke = 1; spoke <= spokes; ++spoke) {
        painter.rotate(45.0);
        color.setAlphaF(0.15F + 0.75F * float(spoke) / spokes);
        painter.setPen(QPen(color, 2, Qt::SolidLine, Qt::RoundCap));
        painter.drawLine(QPointF(0, -3.6), QPointF(0, -6.6));
    }
}

} // namespace quiverly
