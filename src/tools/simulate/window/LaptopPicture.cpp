#include "tools/simulate/window/LaptopPicture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include <QPainter>
#include <QPainterPath>

#include "ui/Theme.h"
#include "ui/controls/Symbol.h"

namespace quiverly {

namespace {

// The laptop, in units of which a deck is 3.2 wide; the hinge is at depth 0.
constexpr double width = 3.2;
constexpr double halfWidth = width / 2;
constexpr double depth = 1.95;
constexpr double screenHeight = 1.95;
constexpr double thickness = 0.07;
constexpr double openAngle = 107.0; // degrees between deck and screen
constexpr double shutAngle = 3.0;

// The eye: how far away it is, and how far it looks down, in radians.
constexpr double distance = 9.0;
constexpr double lookDown = 28.0 * std::numbers::pi / 180.0;

// What is drawn, in the same units around the middle of the deck's hinge.
constexpr QRectF extent{-2.1, -2.2, 4.2, 3.66};

// Parts are drawn on sheets of this size, which are then laid into the picture.
constexpr QRectF deckSheet{0, 0, 1000, 610};
constexpr QRectF screenSheet{0, 0, 1000, 610};

constexpr int keyRows = 5;
constexpr int keysInRow = 13;

// Where a point of the room appears: x to the right, y up, z towards the user.
QPointF seen(double x, double y, double z) {
    const double height = y * std::cos(lookDown) - z * std::sin(lookDown);
    const double nearness = y * std::sin(lookDown) + z * std::cos(lookDown);
    const double size = distance / (distance - nearness);
    return {x * size, -height * size};
}

QTransform onto(const QRectF& sheet, const std::array<QPointF, 4>& corners) {
    QTransform transform;
    QTransform::quadToQuad(QPolygonF{sheet.topLeft(), sheet.topRight(), sheet.bottomRight(), sheet.bottomLeft()},
                           QPolygonF{corners[0], corners[1], corners[2], corners[3]}, transform);
    return transform;
}

std::array<QPointF, 4> deckCorners() {
    return {seen(-halfWidth, 0, 0), seen(halfWidth, 0, 0), seen(halfWidth, 0, depth), seen(-halfWidth, 0, depth)};
}

// The first two corners are at the upper edge of the open screen.
std::array<QPointF, 4> screenCorners(double lid) {
    const double angle = (shutAngle + (openAngle - shutAngle) * lid) * std::numbers::pi / 180.0;
    const double y = screenHeight * std::sin(angle);
    const double z = screenHeight * std::cos(angle);
    return {seen(-halfWidth, y, z), seen(halfWidth, y, z), seen(halfWidth, 0, 0), seen(-halfWidth, 0, 0)};
}

// Whether one sees the screen, not the back of the lid.
bool isScreenSeen(double lid) {
    const auto corners = screenCorners(lid);
    return corners[0].y() < corners[3].y();
}

const QRectF& sheetOf(LaptopPicture::Part part) {
    return part == LaptopPicture::Part::deck ? deckSheet : screenSheet;
}

QPointF onSheet(const LaptopPicture::Spot& spot) {
    const QRectF& sheet = sheetOf(spot.part);
    return {spot.place.x() * sheet.width(), spot.place.y() * sheet.height()};
}

struct LaptopColors {
    QColor bodyBack, bodyFront, edge, outline;
    QColor keyWell, key, keyPressed, trackpad;
    QColor bezel, screenFrom, screenTo;
    double outlineWidth; // of a sheet
};

LaptopColors laptopColors() {
    const Theme& theme = Theme::current();
    if (theme.hasHighContrast()) {
        const QColor paper = theme.colors().window;
        const QColor ink = theme.colors().primary;
        return {.bodyBack = paper,
                .bodyFront = paper,
                .edge = paper,
                .outline = ink,
                .keyWell = paper,
                .key = paper,
                .keyPressed = ink,
                .trackpad = paper,
                .bezel = paper,
                .screenFrom = theme.colors().accent,
                .screenTo = theme.colors().accent,
                .outlineWidth = 5.0};
    }
    LaptopColors colors{.bodyBack = {208, 209, 213},
                        .bodyFront = {232, 233, 236},
                        .edge = {176, 177, 182},
                        .outline = {150, 151, 156},
                        .keyWell = {188, 189, 194},
                        .key = {43, 43, 46},
                        .keyPressed = Theme::primaryPink,
                        .trackpad = {217, 218, 222},
                        .bezel = {24, 24, 26},
                        .screenFrom = {255, 122, 192},
                        .screenTo = {195, 25, 122},
                        .outlineWidth = 1.5};
    if (theme.isDark()) {
        colors.bodyBack = {98, 99, 104};
        colors.bodyFront = {122, 123, 128};
        colors.edge = {74, 75, 79};
        colors.outline = {140, 141, 146};
        colors.keyWell = {80, 81, 85};
        colors.key = {28, 28, 30};
        colors.trackpad = {108, 109, 114};
    }
    return colors;
}

QPen outlinePen(const LaptopColors& colors) {
    return {colors.outline, colors.outlineWidth};
}

QRectF keyOnSheet(int number) {
    constexpr QRectF well{85, 50, 830, 300};
    constexpr double gap = 8;
    const int row = number / keysInRow;
    const int column = number % keysInRow;
    const double width = (well.width() - gap) / keysInRow;
    const double height = (well.height() - gap) / keyRows;
    return {well.left() + gap + column * width, well.top() + gap + row * height, width - gap, height - gap};
}

// The widest key stands below the others.
QRectF spaceBar() {
    const QRectF left = keyOnSheet(4 * keysInRow + 4);
    return left.united(keyOnSheet(4 * keysInRow + 8));
}

bool isPartOfSpaceBar(int number) {
    const int column = number - 4 * keysInRow;
    return column >= 4 && column <= 8;
}

void drawKey(QPainter& painter, int number) {
    painter.drawRoundedRect(isPartOfSpaceBar(number) ? spaceBar() : keyOnSheet(number), 9, 9);
}

} // namespace

void LaptopPicture::resize(const QSizeF& nextArea, double nextScale) {
    if (nextArea == area && nextScale == scale) return;
    area = nextArea;
    scale = nextScale;
    atRest = {};
}

// From the units of the laptop into the area.
QTransform LaptopPicture::placement(const Pose& pose) const {
    const double unit = std::min(area.width() / extent.width(), area.height() / extent.height());
    QTransform transform;
    transform.translate(area.width() / 2 + pose.right * width * unit,
                        (area.height() - extent.height() * unit) / 2 - extent.top() * unit - pose.up * width * unit);
    transform.rotate(pose.turn);
    transform.scale(unit, unit);
    return transform;
}

QTransform LaptopPicture::ofPart(Part part, double lid) const {
    return part == Part::deck ? onto(deckSheet, deckCorners()) : onto(screenSheet, screenCorners(lid));
}

std::optional<LaptopPicture::Spot> LaptopPicture::spotAt(const QPointF& point) const {
    for (const Part part : {Part::screen, Part::deck}) {
        const QPointF there = (ofPart(part, 1.0) * placement({})).inverted().map(point);
        const QRectF& sheet = sheetOf(part);
        if (sheet.contains(there)) {
            return Spot{.part = part, .place = {there.x() / sheet.width(), there.y() / sheet.height()}};
        }
    }
    return std::nullopt;
}

QPointF LaptopPicture::pointOf(const Spot& spot) const {
    return (ofPart(spot.part, 1.0) * placement({})).map(onSheet(spot));
}

void LaptopPicture::draw(QPainter& painter, const Pose& pose, std::span<const Wave> waves, std::span<const int> keys) {
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    drawShadow(painter, pose);
    painter.save();
    painter.setTransform(placement(pose), true);
    if (pose.lid < 1.0) {
        drawLaptop(painter, pose.lid);
    } else {
        if (atRest.isNull()) {
            atRest = QPixmap((area * scale).toSize());
            atRest.setDevicePixelRatio(scale);
            atRest.fill(Qt::transparent);
            QPainter once(&atRest);
            once.setRenderHint(QPainter::Antialiasing);
            once.setTransform(placement({}), true);
            drawLaptop(once, 1.0);
        }
        painter.save();
        painter.setTransform(placement({}).inverted(), true);
        painter.drawPixmap(QPointF(), atRest);
        painter.restore();
    }
    if (!keys.empty()) {
        painter.save();
        painter.setTransform(ofPart(Part::deck, 1.0), true);
        painter.setPen(Qt::NoPen);
        painter.setBrush(laptopColors().keyPressed);
        for (const int key : keys) drawKey(painter, key);
        painter.restore();
    }
    for (const Wave& wave : waves) drawWave(painter, wave, pose.lid);
    painter.restore();
}

// Below the laptop; paler and wider the higher it is.
void LaptopPicture::drawShadow(QPainter& painter, const Pose& pose) const {
    if (Theme::current().hasHighContrast()) return;
    painter.save();
    painter.setTransform(placement({.right = pose.right}), true);
    const double height = std::max(0.0, pose.up);
    const QPointF front = seen(halfWidth, -thickness, depth);
    painter.translate(0, front.y() - 0.36);
    painter.scale(1.0 + height, 0.3 + height);
    const double radius = front.x() * 1.06;
    QRadialGradient shade({0, 0}, radius);
    const float strength = Theme::current().isDark() ? 0.5F : 0.3F;
    const auto at = [&](float share) {
        return QColor::fromRgbF(0, 0, 0, strength * share * static_cast<float>(1.0 - 4.0 * height));
    };
    shade.setColorAt(0.0, at(1.0F));
    shade.setColorAt(0.7, at(0.75F));
    shade.setColorAt(0.9, at(0.2F));
    shade.setColorAt(1.0, Qt::transparent);
    painter.setPen(Qt::NoPen);
    painter.setBrush(shade);
    painter.drawEllipse(QPointF(), radius, radius);
    painter.restore();
}

void LaptopPicture::drawLaptop(QPainter& painter, double lid) const {
    if (isScreenSeen(lid)) drawScreen(painter, lid);
    drawDeck(painter);
    if (!isScreenSeen(lid)) drawScreen(painter, lid);
}

void LaptopPicture::drawDeck(QPainter& painter) const {
    const LaptopColors colors = laptopColors();
    const QPolygonF front{seen(-halfWidth, 0, depth), seen(halfWidth, 0, depth),
                          seen(halfWidth - 0.04, -thickness, depth), seen(-halfWidth + 0.04, -thickness, depth)};
    painter.setPen(QPen(colors.outline, 0.004 * colors.outlineWidth / 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(colors.edge);
    painter.drawPolygon(front);

    painter.save();
    painter.setTransform(ofPart(Part::deck, 1.0), true);
    QLinearGradient body(deckSheet.topLeft(), deckSheet.bottomLeft());
    body.setColorAt(0, colors.bodyBack);
    body.setColorAt(1, colors.bodyFront);
    painter.setPen(outlinePen(colors));
    painter.setBrush(body);
    painter.drawRoundedRect(deckSheet, 22, 22);

    painter.setPen(Theme::current().hasHighContrast() ? outlinePen(colors) : QPen(Qt::NoPen));
    painter.setBrush(colors.keyWell);
    painter.drawRoundedRect(keyOnSheet(0).united(keyOnSheet(keyCount - 1)).adjusted(-8, -8, 8, 8), 14, 14);
    painter.setBrush(colors.key);
    for (int number = 0; number < keyCount; ++number) {
        if (!isPartOfSpaceBar(number)) drawKey(painter, number);
    }
    painter.drawRoundedRect(spaceBar(), 9, 9);

    painter.setPen(outlinePen(colors));
    painter.setBrush(colors.trackpad);
    painter.drawRoundedRect(QRectF(330, 376, 340, 200), 16, 16);
    painter.restore();
}

void LaptopPicture::drawScreen(QPainter& painter, double lid) const {
    const LaptopColors colors = laptopColors();
    painter.save();
    painter.setTransform(ofPart(Part::screen, lid), true);
    painter.setPen(outlinePen(colors));
    if (isScreenSeen(lid)) {
        painter.setBrush(colors.bezel);
        painter.drawRoundedRect(screenSheet, 24, 24);
        const QRectF picture = screenSheet.adjusted(26, 26, -26, -40);
        QLinearGradient shine(picture.topLeft(), picture.bottomRight());
        shine.setColorAt(0, colors.screenFrom);
        shine.setColorAt(1, colors.screenTo);
        painter.setPen(Qt::NoPen);
        painter.setBrush(shine);
        painter.drawRoundedRect(picture, 10, 10);
        drawSymbol(painter, QRectF(0, 0, 180, 220).translated(picture.center() - QPointF(90, 110)), Symbol::hand,
                   Qt::white);
    } else {
        painter.setBrush(colors.bodyFront);
        painter.drawRoundedRect(screenSheet, 24, 24);
        drawSymbol(painter, QRectF(430, 225, 140, 150), Symbol::hand,
                   Theme::current().hasHighContrast() ? colors.outline : colors.edge);
    }
    painter.restore();
}

void LaptopPicture::drawWave(QPainter& painter, const Wave& wave, double lid) const {
    const QRectF& sheet = sheetOf(wave.spot.part);
    painter.save();
    painter.setTransform(ofPart(wave.spot.part, lid), true);
    painter.setClipRect(sheet);
    QColor color = wave.spot.part == Part::screen ? QColor(Qt::white) : Theme::current().colors().accent;
    for (const double inward : {0.0, 0.06, 0.12}) {
        const double radius = (wave.radius - inward) * sheet.width();
        if (radius <= 0) break;
        color.setAlphaF(static_cast<float>(std::clamp(wave.opacity * (1.0 - 5.0 * inward), 0.0, 1.0)));
        painter.setPen(QPen(color, 16.0 - 60.0 * inward));
        painter.setBrush(Qt::NoBrush);
        painter.drawEllipse(onSheet(wave.spot), radius, radius);
    }
    painter.restore();
}

} // namespace quiverly
