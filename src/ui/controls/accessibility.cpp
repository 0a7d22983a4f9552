#include "ui/controls/accessibility.h"

#include <QAbstractButton>
#include <QAccessibleWidget>
#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <QVariant>

#include "ui/controls/Slider.h"

namespace quiverly {

namespace {

constexpr char roleProperty[] = "accessibleRole";

QAccessible::Role roleOf(const QObject& object) {
    const QVariant role = object.property(roleProperty);
    return role.isValid() ? static_cast<QAccessible::Role>(role.toInt()) : QAccessible::NoRole;
}

// The parts of the window inside a widget, from top to bottom.
QWidgetList partsInside(const QWidget& widget) {
    QWidgetList parts;
    for (QObject* object : widget.children()) {
        auto* child = qobject_cast<QWidget*>(object);
        if (!child || child->isWindow() || child->isHidden()) continue;
        if (roleOf(*child) == QAccessible::NoRole) {
            parts << partsInside(*child);
        } else {
            parts << child;
        }
    }
    return parts;
}

class AccessiblePart : public QAccessibleWidget {
public:
    explicit AccessiblePart(QWidget& widget) : QAccessibleWidget(&widget), part(widget) {}

    QAccessible::Role role() const override { return roleOf(part); }

    // A widget that hands its focus on is not focused itself.
    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.focused = QApplication::focusWidget() == &part;
        return state;
    }

    QString text(QAccessible::Text kind) const override {
        if (kind != QAccessible::Name || !part.accessibleName().isEmpty()) return QAccessibleWidget::text(kind);
        if (const auto* label = qobject_cast<const QLabel*>(&part)) return label->text();
        if (const auto* button = qobject_cast<const QAbstractButton*>(&part)) return button->text();
        return QAccessibleWidget::text(kind);
    }

    QAccessibleInterface* parent() const override {
        const QWidget* above = part.parentWidget();
        while (above && roleOf(*above) == QAccessible::NoRole && !above->isWindow()) above = above->parentWidget();
        return above ? QAccessible::queryAccessibleInterface(const_cast<QWidget*>(above)) : QAccessibleWidget::parent();
    }

    int childCount() const override { return static_cast<int>(partsInside(part).size()); }

    QAccessibleInterface* child(int index) const override {
        return QAccessible::queryAccessibleInterface(partsInside(part).value(index));
    }

    int indexOfChild(const QAccessibleInterface* child) const override {
        return static_cast<int>(partsInside(part).indexOf(qobject_cast<QWidget*>(child->object())));
    }

    QAccessibleInterface* childAt(int x, int y) const override {
        for (QWidget* inside : partsInside(part)) {
            QAccessibleInterface* found = QAccessible::queryAccessibleInterface(inside);
            if (found->rect().contains(x, y)) return found;
        }
        return nullptr;
    }

private:
    QWidget& part;
};

// A button that is pressed, or one of a group that is chosen.
class AccessibleButton : public AccessiblePart {
public:
    explicit AccessibleButton(QAbstractButton& button) : AccessiblePart(button), button(button) {}

    QAccessible::State state() const override {
        QAccessible::State state = AccessiblePart::state();
        state.checkable = button.isCheckable();
        state.checked = button.isChecked();
        state.pressed = button.isDown();
        return state;
    }

    QStringList actionNames() const override { return QStringList{mainAction()} + AccessiblePart::actionNames(); }

    void doAction(const QString& name) override {
        if (name != mainAction()) return AccessiblePart::doAction(name);
        if (button.isEnabled()) button.click();
    }

private:
    QString mainAction() const { return button.isCheckable() ? toggleAction() : pressAction(); }

    QAbstractButton& button;
};

// A slider in the unit of its value, instead of the position in hundredths.
class AccessibleSlider : public AccessiblePart, public QAccessibleValueInterface {
public:
    explicit AccessibleSlider(Slider& slider) : AccessiblePart(slider), slider(slider) {}

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::ValueInterface) return static_cast<QAccessibleValueInterface*>(this);
        return AccessiblePart::interface_cast(type);
    }

    QString text(QAccessible::Text kind) const override {
        if (kind == QAccessible::Value) return QString::asprintf("%.2f", slider.shown());
        return AccessiblePart::text(kind);
    }

    QVariant currentValue() const override { return slider.shown(); }
    void setCurrentValue(const QVariant& value) override { slider.choose(value.toDouble()); }
    QVariant minimumValue() const override { return slider.minimum() / 100.0; }
    QVariant maximumValue() const override { return slider.maximum() / 100.0; }
    QVariant minimumStepSize() const override { return slider.singleStep() / 100.0; }

    QStringList actionNames() const override {
        return QStringList{increaseAction(), decreaseAction()} + AccessiblePart::actionNames();
    }

    void doAction(const QString& name) override {
        if (name == increaseAction()) {
            slider.triggerAction(QAbstractSlider::SliderSingleStepAdd);
        } else if (name == decreaseAction()) {
            slider.triggerAction(QAbstractSlider::SliderSingleStepSub);
        } else {
            AccessiblePart::doAction(name);
        }
    }

private:
    Slider& slider;
};

QAccessibleInterface* describe(const QString&, QObject* object) {
    auto* widget = qobject_cast<QWidget*>(object);
    if (!widget || !widget->property(roleProperty).isValid()) return nullptr;
    if (auto* slider = dynamic_cast<Slider*>(widget)) return new AccessibleSlider(*slider);
    if (auto* button = qobject_cast<QAbstractButton*>(widget)) return new AccessibleButton(*button);
    return new AccessiblePart(*widget);
}

// Reports parts that come and go, as they do in this tree and not in the toolkit's.
class VisibilityReporter : public QObject {
    bool eventFilter(QObject* watched, QEvent* event) override {
        const bool shown = event->type() == QEvent::Show;
        if (QAccessible::isActive() && !event->spontaneous() && (shown || event->type() == QEvent::Hide)) {
            QAccessibleEvent change(watched, shown ? QAccessible::ObjectCreated : QAccessible::ObjectDestroyed);
            QAccessible::updateAccessibility(&change);
        }
        return false;
    }
};

// Of the toolkit, which may have made one while the widget was being constructed.
void forgetDescription(QWidget& widget) {
    QAccessibleInterface* const description = QAccessible::queryAccessibleInterface(&widget);
    if (description) QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(description));
}

} // namespace

void describeAs(QWidget& widget, QAccessible::Role role, const QString& name) {
    static VisibilityReporter reporter;
    QAccessible::installFactory(describe); // of no effect when it is installed already
    if (!widget.property(roleProperty).isValid()) forgetDescription(widget);
    widget.installEventFilter(&reporter);
    widget.setProperty(roleProperty, role);
    widget.setAccessibleName(name);
}

// Until Qt 6.8 nothing but a notification that appears is spoken by itself.
#if QT_VERSION < QT_VERSION_CHECK(6, 8, 0)
void describeAsSpeaking(QLabel& label) {
    describeAs(label, QAccessible::Notification);
}

void speak(QLabel& label) {
    QAccessibleEvent appeared(&label, QAccessible::ObjectShow);
    QAccessible::updateAccessibility(&appeared);
}

void speakOnAppearing(QLabel&) {} // the toolkit itself reports that it appears
#else
void describeAsSpeaking(QLabel& label) {
    describeAs(label, QAccessible::StaticText);
}

void speak(QLabel& label) {
    QAccessibleAnnouncementEvent announcement(&label, label.text());
    QAccessible::updateAccessibility(&announcement);
}

void speakOnAppearing(QLabel& label) {
    speak(label);
}
#endif

} // namespace quiverly
