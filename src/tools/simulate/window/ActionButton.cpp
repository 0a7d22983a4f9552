#include "tools/simulate/window/ActionButton.h"

#include <algorithm>

#include <QFontMetrics>
#include <QKeyEvent>

#include "ui/Fonts.h"
#include "ui/Theme.h"
#include "ui/controls/FocusRing.h"
#include "ui/controls/accessibility.h"
#include "ui/controls/painting.h"

namespace quiverly {

// Lengths of the design, in pixels.
namespace {
constexpr int leastHeight = 28;
constexpr double radius = 6;
} // namespace

ActionButton::ActionButton(const QString& label) : QPushButton(label), ring(new FocusRing(*this)) {
    describeAs(*this, QAccessible::Button);
    setAttribute(Qt::WA_LayoutUsesWidgetRect);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setFont(fontFor(FontRole::callout));
    connect(&Theme::current(), &Theme::changed, this, [this] { setFont(fontFor(FontRole::callout)); });
}

QSize ActionButton::sizeHint() const {
    const QSize label = fontMetrics().size(Qt::TextSingleLine, text());
    return {label.width() + 2 * scaled(8), std::max(leastHeight, label.height() + 2 * scaled(6))};
}

void ActionButton::keyPressEvent(QKeyEvent* event) {
    const bool enters = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enters && !event->isAutoRepeat()) return click();
    QPushButton::keyPressEvent(event);
}

void ActionButton::resizeEvent(QResizeEvent* event) {
    QPushButton::resizeEvent(event);
    ring->surround(rect(), scaled(radius));
}

void ActionButton::paintEvent(QPaintEvent*) {
    const Theme::Colors& colors = Theme::current().colors();
    QColor fill = isChecked() ? colors.accent : colors.selection;
    if (underMouse()) fill = fill.darker(104);
    if (isDown()) fill = fill.darker(112);
    QPainter painter(this);
    fillRounded(painter, rect(), scaled(radius), fill);
    outlineRounded(painter, rect(), scaled(radius), colors.selectionEdge, std::max(1.0, colors.edgeWidth));
    painter.setPen(isChecked() ? QColor(Qt::white) : colors.primary);
    painter.setFont(font());
    painter.drawText(rect(), Qt::AlignCenter, text());
}

} // namespace quiverly
