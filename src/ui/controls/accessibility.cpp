#include "ui/controls/accessibility.h"

#include <QAccessibleWidget>

#include "ui/controls/Picture.h"
#include "ui/controls/SegmentedPicker.h"
#include "ui/controls/Slider.h"

namespace quiverly {

namespace {

// A slider in the unit of its value.
class AccessibleSlider : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    explicit AccessibleSlider(Slider& slider) : QAccessibleWidget(&slider, QAccessible::Slider), slider(slider) {}

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::ValueInterface) return static_cast<QAccessibleValueInterface*>(this);
        return QAccessibleWidget::interface_cast(type);
    }

    QString text(QAccessible::Text kind) const override {
        if (kind == QAccessible::Value) return QString::asprintf("%.2f", slider.shown());
        return QAccessibleWidget::text(kind);
    }

    QVariant currentValue() const override { return slider.shown(); }
    void setCurrentValue(const QVariant& value) override { slider.choose(value.toDouble()); }
    QVariant minimumValue() const override { return slider.minimum() / 100.0; }
    QVariant maximumValue() const override { return slider.maximum() / 100.0; }
    QVariant minimumStepSize() const override { return slider.singleStep() / 100.0; }

    QStringList actionNames() const override {
        return QStringList{increaseAction(), decreaseAction()} + QAccessibleWidget::actionNames();
    }

    void doAction(const QString& name) override {
        if (name == increaseAction()) {
            slider.triggerAction(QAbstractSlider::SliderSingleStepAdd);
        } else if (name == decreaseAction()) {
            slider.triggerAction(QAbstractSlider::SliderSingleStepSub);
        } else {
            QAccessibleWidget::doAction(name);
        }
    }

private:
    Slider& slider;
};

QAccessibleInterface* describe(const QString&, QObject* object) {
    if (auto* slider = dynamic_cast<Slider*>(object)) return new AccessibleSlider(*slider);
    if (auto* picker = dynamic_cast<SegmentedPicker*>(object)) {
        return new QAccessibleWidget(picker, QAccessible::Grouping);
    }
    if (auto* picture = dynamic_cast<Picture*>(object)) return new QAccessibleWidget(picture, QAccessible::Graphic);
    return nullptr;
}

} // namespace

void describeControlsToScreenReaders() {
    static const bool installed = [] {
        QAccessible::installFactory(describe);
        return true;
    }();
    static_cast<void>(installed);
}

} // namespace quiverly
