#include "ui/controls/Slider.h"

#include <algorithm>
#include <cmath>

#include <QMouseEvent>

#include "ui/Theme.h"
#include "ui/controls/accessibility.h"
#include "ui/controls/painting.h"

namespace quiverly {

namespace {
constexpr double handleRadius = 9.5; // pixels, as are all lengths here
constexpr double focusGap = 4.5;     // from the edge of the handle's place to the handle inside the focus ring
constexpr double grooveHeight = 4;
constexpr double grooveInset = 2;
constexpr int controlHeight = 22;
} // namespace

Slider::Slider(const QString& name, int minimum, int maximum) : QSlider(Qt::Horizontal), shownValue(minimum / 100.0) {
    describeControlsToScreenReaders();
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

// The nearest that the slider has; the lowest for what is no number.
int Slider::positionOf(double value) const {
    if (std::isnan(value)) return minimum();
    return int(std::lround(std::clamp(value * 100, double(minimum()), double(maximum()))));
}

int Slider::positionAt(double x) const {
    const double travel = width() - 2 * handleRadius;
    const double fraction = std::clamp((x - handleRadius) / travel, 0.0, 1.0);
    return minimum() + int(std::lround(fraction * (maximum() - minimum())));
}

// A mouse that does not get as far as another step chooses nothing.
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

// The wheel scrolls the view; a threshold should not change because the pointer happened to rest here.
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
