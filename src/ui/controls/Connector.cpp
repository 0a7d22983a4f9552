#include "ui/controls/Connector.h"

#include <QPainter>

#include "ui/Theme.h"

namespace quiverly {

namespace {
constexpr int barInset = 13; // pixels: under the centre of the badge
constexpr int barWidth = 2;
constexpr int barHeight = 22;
constexpr int padding = 6; // above and below
} // namespace

Connector::Connector() {
    setFixedHeight(barHeight + 2 * padding);
}

void Connector::show(bool isComplete) {
    if (isComplete == complete) return;
    complete = isComplete;
    update();
}

void Connector::paintEvent(QPaintEvent*) {
    QColor color = complete ? Theme::primaryPink : Theme::current().color(Tone::secondary);
    color.setAlphaF(complete ? 0.7F : 0.25F);
    QPainter(this).fillRect(barInset, padding, barWidth, barHeight, color);
}

} // namespace quiverly
