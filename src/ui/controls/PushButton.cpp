#include "ui/controls/PushButton.h"

#include <algorithm>

#include <QFontMetrics>
#include <QKeyEvent>

#include "ui/Fonts.h"
#include "ui/Theme.h"
#include "ui/controls/painting.h"

namespace quiverly {

namespace {
constexpr int fillInset = 1;    // pixels from the widget's edge to the fill
constexpr int labelPadding = 9; // pixels above and below: the label's own 4 and the large button's 5
constexpr int leastFillHeight = 34;
constexpr int cornerRadius = 6;
} // namespace

PushButton::PushButton(const QString& label) : QPushButton(label), tint(Theme::primaryPink) {
    setAttribute(Qt::WA_LayoutUsesWidgetRect);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setFont(fontFor(FontRole::headline));
    connect(&Theme::current(), &Theme::changed, this, [this] { setFont(fontFor(FontRole::headline)); });
}

void PushButton::setTint(const QColor& next) {
    if (next == tint) return;
    tint = next;
    update();
}

QSize PushButton::sizeHint() const {
    const QSize label = fontMetrics().size(Qt::TextSingleLine, text());
    const int fillHeight = std::max(leastFillHeight, fontMetrics().height() + 2 * labelPadding);
    return {label.width() + 2 * (fillInset + 12), fillHeight + 2 * fillInset};
}

void PushButton::keyPressEvent(QKeyEvent* event) {
    const bool enters = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enters && !event->isAutoRepeat()) return click();
    QPushButton::keyPressEvent(event);
}

void PushButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QRectF fill = rect().adjusted(fillInset, fillInset, -fillInset, -fillInset);
    fillRounded(painter, fill, cornerRadius, isDown() ? tint.darker(115) : tint);
    if (focusIsVisible(*this)) drawFocusRing(painter, fill.adjusted(2, 2, -2, -2), cornerRadius - 2, Qt::white);
    painter.setPen(Qt::white);
    painter.drawText(rect(), Qt::AlignCenter, text());
}

} // namespace quiverly
