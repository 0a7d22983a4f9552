#pragma once

#include <optional>
#include <span>

#include <QPixmap>
#include <QPointF>
#include <QRectF>
#include <QTransform>

#include "tools/simulate/window/Movement.h"

class QPainter;

namespace quiverly {

// Draws a laptop as seen from the front and somewhat above, in the colours of the theme, and knows where it is hit.
class LaptopPicture {
public:
    enum class Part { deck, screen };

    // A place on a part, in the coordinates of that part as seen from straight above: from 0 to 1 to the right and
    // towards the user (deck) or downwards (screen).
    struct Spot {
        Part part = Part::deck;
        QPointF place{0.5, 0.75}; // the palm rest

        bool operator==(const Spot&) const = default;
    };

    // A ring that runs over the part where it was hit.
    struct Wave {
        Spot spot;
        double radius;  // of the deck's width
        double opacity; // from 0 to 1
    };

    // Where the laptop is drawn at rest: as large as fits.
    void resize(const QSizeF& area, double scale); // pixels of the screen for each of the widget

    // The spot under a point when the laptop is at rest with its lid open, if there is one.
    std::optional<Spot> spotAt(const QPointF& point) const;
    QPointF pointOf(const Spot& spot) const;

    // The laptop with waves on it; keys that are pressed down, by their number from 0.
    void draw(QPainter& painter, const Pose& pose, std::span<const Wave> waves, std::span<const int> keys);
    void forgetColors() { atRest = {}; }

    static constexpr int keyCount = 13 * 5;

private:
    QTransform ofPart(Part part, double lid) const;
    QTransform placement(const Pose& pose) const;
    void drawShadow(QPainter& painter, const Pose& pose) const;
    void drawLaptop(QPainter& painter, double lid) const;
    void drawDeck(QPainter& painter) const;
    void drawScreen(QPainter& painter, double lid) const;
    void drawWave(QPainter& painter, const Wave& wave, double lid) const;

    QSizeF area;
    double scale = 1.0;
    QPixmap atRest; // the laptop with its lid open, without waves
};

} // namespace quiverly
