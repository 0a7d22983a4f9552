#include "tools/simulate/window/ActionButton.h"

#include <algorithm>

#include <QFontMetrics>
#include <QPainter>

#include "ui/Theme.h"
#include "ui/controls/painting.h"

namespace quiverly {

// Lengths of the design, in pixels.
namespace {
constexpr int leastHeight = 28;
} // namespace

ActionButton::ActionButton(const QString& label) : Button(label, FontRole::callout) {}

QSize ActionButton::sizeHint() const {
    const QSize label = fontMetrics().size(Qt::TextSingleLine, text());
    return {label.width() + 2 * scaled(8), std::max(leastHeight, label.height() + 2 * scaled(6))};
}

void ActionButton::paintEvent(QPaintEvent*) {
    const Theme::Colors& colors = Theme::current().colors();
    QColor fill = isChecked() ? colors.accent : colors.selection;
    if (underMouse()) fill = fill.darker(104);
    if (isDown()) fill = fill.darker(112);
    QPainter painter(this);
    fillRounded(painter, rect(), scaled(cornerRadius), fill);
    outlineRounded(painter, rect(), scaled(cornerRadius), colors.selectionEdge, std::max(1.0, colors.edgeWidth));
    painter.setPen(isChecked() ? QColor(Qt::white) : colors.primary);
    painter.setFont(font());
    painter.drawText(rect(), Qt::AlignCenter, text());
}

} // namespace quiverly
