#include "ui/controls/Slider.h"

#include <algorithm>
#include <cmath>

#include <QAccessibleWidget>
#include <QMouseEvent>

#include "ui/Theme.h"
#include "ui/controls/painting.h"

namespace quiverly {

namespace {

constexpr double handleRadius = 9.5; // pixels, as are all lengths here
constexpr double focusGap = 4.5;     // from the edge of the handle's place to the handle inside the focus ring
constexpr double grooveHeight = 4;
constexpr double grooveInset = 2;
constexpr int controlHeight = 22;

// What a screen reader sees: the value in its own unit, not the position in hundredths.
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

QAccessibleInterface* describeSlider(const QString&, QObject* object) {
    auto* slider = dynamic_cast<Slider*>(object);
    return slider ? new AccessibleSlider(*slider) : nullptr;
}

} // namespace

Slider::Slider(const QString& name, int minimum, int maximum) : QSlider(Qt::Horizontal), shownValue(minimum / 100.0) {
    QAccessible::installFactory(describeSlider); // of no effect when it is installed already
    setAccessibleName(name);
    setAttribute(Qt::WA_LayoutUsesWidgetRect);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setRange(minimum, maximum);
    setPageStep(5);
    connect(this, &QSlider::actionTriggered, this, [this] { didMove(); });
}

void Slider::show(double value) {
    shownValue = value;
    setValue(positionOf(value));
}

double Slider::shown() const {
    return shownValue;
}

void Slider::choose(double value) {
    if (!std::isfinite(value)) return;
    setSliderPosition(positionOf(value));
    triggerAction(SliderMove);
}

// Runs before the new position has become the value.
void Slider::didMove() {
    const double chosen = sliderPosition() / 100.0;
    if (chosen == shownValue) return;
    shownValue = chosen;
    if (onMove) onMove(chosen);
}

QSize Slider::sizeHint() const {
    return {160, controlHeight};
}

QSize Slider::minimumSizeHint() const {
    return {80, controlHeight};
}

QRectF Slider::groove() const {
    return {grooveInset, (height() - grooveHeight) / 2, width() - 2 * grooveInset, grooveHeight};
}

QPointF Slider::handleCentre() const {
    const double travel = width() - 2 * handleRadius;
    const double fraction = double(sliderPosition() - minimum()) / (maximum() - minimum());
    return {handleRadius + travel * fraction, height() / 2.0};
}

// The nearest position; the lowest for a value that is not a number.
int Slider::positionOf(double value) const {
    if (std::isnan(value)) return minimum();
    return int(std::lround(std::clamp(value * 100, double(minimum()), double(maximum()))));
}

int Slider::positionAt(double x) const {
    const double travel = width() - 2 * handleRadius;
    const double fraction = std::clamp((x - handleRadius) / travel, 0.0, 1.0);
    return minimum() + int(std::lround(fraction * (maximum() - minimum())));
}

// A mouse that does not reach another step chooses nothing.
void Slider::moveHandle(double x) {
    const int position = positionAt(x);
    if (position != sliderPosition()) choose(position / 100.0);
}

void Slider::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return event->ignore();
    setSliderDown(true);
    grip = event->position().x() - handleCentre().x();
    if (std::abs(grip) <= handleRadius) return;
    grip = 0.0;
    moveHandle(event->position().x());
}

void Slider::mouseMoveEvent(QMouseEvent* event) {
    if (isSliderDown()) moveHandle(event->position().x() - grip);
}

void Slider::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) setSliderDown(false);
}

// The wheel scrolls the view: a threshold must not change because the pointer happens to be here.
void Slider::wheelEvent(QWheelEvent* event) {
    event->ignore();
}

void Slider::paintEvent(QPaintEvent*) {
    const Theme::Colors& colors = Theme::current().colors();
    const QPointF centre = handleCentre();
    QPainter painter(this);
    fillRounded(painter, groove(), grooveHeight / 2, colors.groove);
    QRectF filled = groove();
    filled.setRight(centre.x());
    fillRounded(painter, filled, grooveHeight / 2, Theme::primaryPink);
    double radius = handleRadius;
    if (focusIsVisible(*this)) {
        painter.setBrush(colors.window);
        painter.setPen(QPen(colors.focus, 2));
        painter.drawEllipse(centre, radius - 1, radius - 1);
        radius -= focusGap;
    }
    painter.setBrush(isSliderDown() ? colors.handle.darker(105) : colors.handle);
    painter.setPen(QPen(colors.handleEdge, 0.5));
    painter.drawEllipse(centre, radius - 0.25, radius - 0.25);
}

} // namespace quiverly
