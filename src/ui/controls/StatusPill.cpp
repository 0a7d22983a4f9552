#include "ui/controls/StatusPill.h"

#include "ui/controls/painting.h"

namespace quiverly {

StatusPill::StatusPill() : Label(FontRole::strongCaption, Tone::secondary) {
    setContentsMargins(10, 5, 10, 5);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void StatusPill::show(const QString& word, Tone tone) {
    setText(word);
    setTone(tone);
}

void StatusPill::paintEvent(QPaintEvent* event) {
    QColor fill = palette().color(QPalette::WindowText);
    fill.setAlphaF(0.15F);
    QPainter painter(this);
    fillRounded(painter, rect(), height() / 2.0, fill);
    painter.end();
    Label::paintEvent(event);
}

} // namespace quiverly
