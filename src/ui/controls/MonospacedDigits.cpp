#include "ui/controls/MonospacedDigits.h"

#include <algorithm>

#include <QPainter>

namespace quiverly {

MonospacedDigits::MonospacedDigits(FontRole role, Tone tone) : Label(role, tone) {
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred); // a number may be of any length
}

int MonospacedDigits::advance(QChar character) const {
    const QFontMetrics metrics = fontMetrics();
    if (!character.isDigit()) return metrics.horizontalAdvance(character);
    int widest = 0;
    for (char digit = '0'; digit <= '9'; ++digit) widest = std::max(widest, metrics.horizontalAdvance(digit));
    return widest;
}

void MonospacedDigits::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QString number = text();
    int right = width();
    for (auto character = number.crbegin(); character != number.crend() && right >= 0; ++character) {
        const int cell = advance(*character);
        right -= cell;
        painter.drawText(QRect(right, 0, cell, height()), Qt::AlignCenter | Qt::TextDontClip, *character);
    }
}

} // namespace quiverly
