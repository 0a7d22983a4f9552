#include "ui/controls/PushButton.h"

#include <algorithm>

#include <QFontMetrics>
#include <QPainter>

#include "ui/Theme.h"
#include "ui/controls/painting.h"

namespace quiverly {

// Lengths of the design, in pixels.
namespace {
constexpr int faceInset = 1;    // from the widget's edge to what is filled
constexpr int labelPadding = 9; // above and below: the label's own 4 and the large button's 5
constexpr int leastFaceHeight = 34;
} // namespace

PushButton::PushButton(const QString& label) : Button(label, FontRole::headline) {}

void PushButton::setTint(Tint next) {
    if (next == tint) return;
    tint = next;
    update();
}

QSize PushButton::sizeHint() const {
    const QSize label = fontMetrics().size(Qt::TextSingleLine, text());
    const int faceHeight = std::max(leastFaceHeight, fontMetrics().height() + 2 * scaled(labelPadding));
    return {label.width() + 2 * (faceInset + scaled(12)), faceHeight + 2 * faceInset};
}

QRectF PushButton::face() const {
    return rect().adjusted(faceInset, faceInset, -faceInset, -faceInset);
}

void PushButton::paintEvent(QPaintEvent*) {
    const Theme::Colors& colors = Theme::current().colors();
    const QColor fill = tint == Tint::stop ? colors.stop : colors.accent;
    QColor color = fill;
    if (underMouse()) color = fill.darker(106);
    if (isDown()) color = fill.darker(118);
    QPainter painter(this);
    fillRounded(painter, face(), scaled(cornerRadius), color);
    if (Theme::current().hasHighContrast())
        outlineRounded(painter, face(), scaled(cornerRadius), colors.selectionEdge, colors.edgeWidth);
    painter.setPen(Qt::white);
    painter.drawText(rect(), Qt::AlignCenter, text());
}

} // namespace quiverly
