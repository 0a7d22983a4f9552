#include "ui/controls/Slider.h"

#include <algorithm>
#include <cmath>

#include <QMouseEvent>

#include "ui/Fonts.h"
#include "ui/Theme.h"
#include "ui/controls/FocusRing.h"
#include "ui/controls/accessibility.h"
#include "ui/controls/painting.h"

namespace quiverly {

namespace {

// Lengths of the design, in pixels.
constexpr double handleRadius = 9.5;
constexpr double grooveHeight = 4;
constexpr double grooveInset = 2;
constexpr int controlHeight = 22;

} // namespace

Slider::Slider(const QString& name, int minimum, int maximum)
    : QSlider(Qt::Horizontal), shownValue(minimum / 100.0), ring(new FocusRing(*this)) {
    describeAs(*this, QAccessible::Slider, name);
    setAttribute(Qt::WA_LayoutUsesWidgetRect);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setRange(minimum, maximum);
    setPageStep(5);
    connect(this, &QSlider::actionTriggered, this, [this] { didMove(); });
    connect(&Theme::current(), &Theme::changed, this, [this] { updateGeometry(); });
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
    return {160, scaled(controlHeight)};
}

QSize Slider::minimumSizeHint() const {
    return {80, scaled(controlHeight)};
}

QRectF Slider::groove() const {
    const double thickness = scaled(grooveHeight);
    return {grooveInset, (height() - thickness) / 2, width() - 2 * grooveInset, thickness};
}

double Slider::travel() const {
    return width() - 2 * scaled(handleRadius);
}

QRectF Slider::handle() const {
    const double diameter = 2 * scaled(handleRadius);
    const double fraction = double(sliderPosition() - minimum()) / (maximum() - minimum());
    return {travel() * fraction, (height() - diameter) / 2, diameter, diameter};
}

// The nearest position; the lowest for a value that is not a number.
int Slider::positionOf(double value) const {
    if (std::isnan(value)) return minimum();
    return int(std::lround(std::clamp(value * 100, double(minimum()), double(maximum()))));
}

int Slider::positionAt(double x) const {
    const double fraction = std::clamp((x - scaled(handleRadius)) / travel(), 0.0, 1.0);
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
    grip = event->position().x() - handle().center().x();
    if (std::abs(grip) <= scaled(handleRadius)) return;
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

void Slider::resizeEvent(QResizeEvent* event) {
    QSlider::resizeEvent(event);
    ring->surround(handle(), scaled(handleRadius));
}

void Slider::sliderChange(SliderChange change) {
    QSlider::sliderChange(change);
    ring->surround(handle(), scaled(handleRadius));
}

void Slider::paintEvent(QPaintEvent*) {
    const Theme::Colors& colors = Theme::current().colors();
    const double roundness = groove().height() / 2;
    QRectF chosen = groove();
    chosen.setRight(handle().center().x());
    QPainter painter(this);
    fillRounded(painter, groove(), roundness, colors.groove);
    fillRounded(painter, chosen, roundness, Theme::primaryPink);
    fillRounded(painter, handle(), scaled(handleRadius), isSliderDown() ? colors.handle.darker(108) : colors.handle);
    const bool answers = underMouse() || isSliderDown();
    outlineRounded(painter, handle(), scaled(handleRadius), answers ? Theme::primaryPink : colors.handleEdge,
                   answers ? std::max(1.0, colors.edgeWidth) : colors.edgeWidth);
}

} // namespace quiverly
