#include "tools/simulate/window/LaptopView.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include "ui/Fonts.h"
#include "ui/Theme.h"
#include "ui/controls/FocusRing.h"
#include "ui/controls/accessibility.h"
#include "ui/controls/painting.h"

namespace quiverly {

namespace {

constexpr int frameTime = 16;          // milliseconds
constexpr double waveTime = 0.7;       // seconds
constexpr double peakPerSecond = 1.0;  // g
constexpr double peakPerPixel = 0.008; // g
constexpr double noDrag = 6.0;         // pixels that a hand moves without meaning to

bool isPressKey(const QKeyEvent& event) {
    return event.key() == Qt::Key_Space || event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

} // namespace

double LaptopView::peakOf(double seconds, double pixels) {
    const double drag = std::max(0.0, pixels - noDrag) * peakPerPixel;
    const double peak = leastPeak + seconds * peakPerSecond + drag;
    return std::round(std::min(peak, mostPeak) * 100.0) / 100.0;
}

LaptopView::LaptopView()
    : seconds([this] { return static_cast<double>(clock.nsecsElapsed()) * 1e-9; }), ring(new FocusRing(*this)) {
    clock.start();
    describeAs(*this, QAccessible::Button, "Laptop");
    setAccessibleDescription("Press to slap it; hold longer to slap harder.");
    setAttribute(Qt::WA_LayoutUsesWidgetRect);
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    connect(this, &QAbstractButton::clicked, this, [this] { slap(leastPeak); }); // by assistive tools
    connect(&Theme::current(), &Theme::changed, this, [this] {
        laptop.forgetColors();
        follow();
        update();
    });
}

QSize LaptopView::sizeHint() const {
    return {scaled(500), scaled(290)};
}

QSize LaptopView::minimumSizeHint() const {
    return {scaled(300), scaled(200)};
}

void LaptopView::slap(double peak, LaptopPicture::Spot spot) {
    if (!onSlap) return;
    expected.push_back(spot);
    onSlap(peak);
}

void LaptopView::obey(const command::Command& command) {
    const double now = seconds();
    moves.obey(command, now);
    if (const auto* slap = std::get_if<command::Slap>(&command)) {
        LaptopPicture::Spot spot;
        if (!expected.empty()) {
            spot = expected.front();
            expected.erase(expected.begin());
        }
        hits.push_back({.spot = spot, .began = now, .peak = slap->blow.peak});
    }
    follow();
    update();
}

bool LaptopView::event(QEvent* event) {
    if (event->type() == QEvent::UngrabMouse) cancelPress();
    return QAbstractButton::event(event);
}

void LaptopView::mousePressEvent(QMouseEvent* event) {
    const auto spot = laptop.spotAt(event->position());
    if (event->button() != Qt::LeftButton || !spot) return event->ignore();
    beginPress(*spot, event->position());
}

void LaptopView::mouseMoveEvent(QMouseEvent* event) {
    if (!press) return;
    press->to = event->position();
    update();
}

void LaptopView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) endPress();
}

void LaptopView::keyPressEvent(QKeyEvent* event) {
    if (!isPressKey(*event)) return event->ignore();
    const LaptopPicture::Spot palmRest;
    if (!event->isAutoRepeat() && !press) beginPress(palmRest, laptop.pointOf(palmRest));
}

void LaptopView::keyReleaseEvent(QKeyEvent* event) {
    if (!isPressKey(*event)) return event->ignore();
    if (!event->isAutoRepeat()) endPress();
}

void LaptopView::focusOutEvent(QFocusEvent* event) {
    cancelPress();
    QAbstractButton::focusOutEvent(event);
}

void LaptopView::hideEvent(QHideEvent*) {
    timer.stop();
}

void LaptopView::showEvent(QShowEvent*) {
    follow();
}

void LaptopView::resizeEvent(QResizeEvent* event) {
    QAbstractButton::resizeEvent(event);
    laptop.resize(size(), devicePixelRatioF());
    ring->surround(rect(), scaled(8.0));
}

void LaptopView::beginPress(const LaptopPicture::Spot& spot, const QPointF& pointer) {
    press = Press{.spot = spot, .from = pointer, .to = pointer, .began = seconds()};
    setDown(true);
    follow();
    update();
}

void LaptopView::endPress() {
    if (!press) return;
    const double peak = pressPeak();
    const auto spot = press->spot;
    cancelPress();
    slap(peak, spot);
}

void LaptopView::cancelPress() {
    if (!press) return;
    press.reset();
    setDown(false);
    update();
}

double LaptopView::pressPeak() const {
    const QPointF way = press->to - press->from;
    return peakOf(seconds() - press->began, std::hypot(way.x(), way.y()) / fontScale());
}

bool LaptopView::isMoving() const {
    const double now = seconds();
    const auto isFresh = [now](const Hit& hit) { return now - hit.began < waveTime; };
    const bool showsHit = std::ranges::any_of(hits, isFresh);
    if (Theme::current().reducesMotion()) return press || showsHit;
    return press || showsHit || moves.isMoving(now);
}

void LaptopView::follow() {
    if (!isVisible() || !isMoving()) {
        timer.stop();
    } else if (!timer.isActive()) {
        timer.start(frameTime, Qt::PreciseTimer, this);
    }
}

void LaptopView::timerEvent(QTimerEvent* event) {
    if (event->timerId() != timer.timerId()) return QAbstractButton::timerEvent(event);
    const double now = seconds();
    std::erase_if(hits, [now](const Hit& hit) { return now - hit.began >= waveTime; });
    follow();
    update(); // the last time as it comes to rest
}

std::vector<LaptopPicture::Wave> LaptopView::waves() const {
    std::vector<LaptopPicture::Wave> shown;
    for (const Hit& hit : hits) {
        const double share = (seconds() - hit.began) / waveTime;
        if (share >= 1.0) continue;
        const bool still = Theme::current().reducesMotion();
        const double strength = std::min(1.0, 0.35 + 0.65 * hit.peak);
        const double reach = 0.12 + 0.5 * strength;
        shown.push_back({.spot = hit.spot,
                         .radius = still ? 0.06 : 0.02 + reach * (1.0 - std::pow(1.0 - share, 2.0)),
                         .opacity = still ? 0.9 : strength * (1.0 - share)});
    }
    return shown;
}

// Now and then another key, as if at random.
std::vector<int> LaptopView::keysDown() const {
    if (!moves.isTyping() || Theme::current().reducesMotion()) return {};
    const int tap = static_cast<int>(seconds() / 0.13);
    const bool isBetweenTaps = std::fmod(seconds(), 0.13) > 0.09;
    if (isBetweenTaps) return {};
    return {static_cast<int>((static_cast<unsigned>(tap) * 2654435761U >> 8) % LaptopPicture::keyCount)};
}

void LaptopView::paintEvent(QPaintEvent*) {
    laptop.resize(size(), devicePixelRatioF());
    QPainter painter(this);
    const Pose pose = Theme::current().reducesMotion() ? moves.stillPose() : moves.pose(seconds());
    laptop.draw(painter, pose, waves(), keysDown());
    if (press) drawPress(painter);
}

// A ring at the pointer that grows with the strength, and the strength in g.
void LaptopView::drawPress(QPainter& painter) const {
    const Theme::Colors& colors = Theme::current().colors();
    const double peak = pressPeak();
    const double share = (peak - leastPeak) / (mostPeak - leastPeak);
    const double radius = scaled(12.0 + 34.0 * share);
    painter.resetTransform();
    painter.setRenderHint(QPainter::Antialiasing);
    QColor fill = colors.accent;
    fill.setAlphaF(0.22F);
    painter.setBrush(fill);
    painter.setPen(QPen(Qt::white, scaled(5.0)));
    painter.drawEllipse(press->to, radius, radius);
    painter.setPen(QPen(colors.accent, scaled(3.0)));
    painter.drawEllipse(press->to, radius, radius);

    painter.setFont(fontFor(FontRole::headline));
    const QString label = QString::asprintf("%.2f g", peak);
    const QSizeF size(painter.fontMetrics().horizontalAdvance(label) + scaled(16.0),
                      painter.fontMetrics().height() + scaled(6.0));
    QRectF pill({}, size);
    pill.moveCenter(press->to - QPointF(0, radius + size.height() / 2 + scaled(5.0)));
    if (pill.top() < 0) pill.moveTop(press->to.y() + radius + scaled(5.0));
    pill.moveLeft(std::clamp(pill.left(), 0.0, std::max(0.0, width() - size.width())));
    fillRounded(painter, pill, size.height() / 2, colors.accent);
    painter.setPen(Qt::white);
    painter.drawText(pill, Qt::AlignCenter, label);
}

} // namespace quiverly
