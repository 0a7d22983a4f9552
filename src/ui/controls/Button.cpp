#include "ui/controls/Button.h"

#include <QKeyEvent>

#include "ui/Theme.h"
#include "ui/controls/FocusRing.h"
#include "ui/controls/accessibility.h"
#include "ui/controls/painting.h"

namespace quiverly {

Button::Button(const QString& label, FontRole font) : QPushButton(label), ring(new FocusRing(*this)) {
    describeAs(*this, QAccessible::Button);
    setAttribute(Qt::WA_LayoutUsesWidgetRect);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setFont(fontFor(font));
    connect(&Theme::current(), &Theme::changed, this, [this, font] { setFont(fontFor(font)); });
}

void Button::keyPressEvent(QKeyEvent* event) {
    const bool enters = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enters && !event->isAutoRepeat()) return click();
    QPushButton::keyPressEvent(event);
}

void Button::resizeEvent(QResizeEvent* event) {
    QPushButton::resizeEvent(event);
    ring->surround(face(), scaled(cornerRadius));
}

} // namespace quiverly
