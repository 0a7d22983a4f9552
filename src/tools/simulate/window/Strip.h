#pragma once

#include <deque>
#include <vector>

#include <QWidget>

#include "tools/plot/Axis.h"
#include "tools/plot/Plot.h"

namespace quiverly {

// The last seconds as the detector sees them, drawn like the plots of recordings: magnitude and baseline above; below
// them the score, the threshold, and the slaps with their amplitudes, which are in the accessible description, too.
//
// It runs with the readings, and is not drawn anew while all that it could show is the noise of a laptop at rest.
class Strip : public QWidget {
public:
    static constexpr double length = 8.0; // seconds

    Strip();

    // Seconds of the laptop's clock, which never decreases.
    void addReading(const Reading& reading, bool isCoolingDown);
    void addSlap(const Plot::Slap& slap);
    void setThreshold(double threshold); // g

    // As it is shown, such as "0.612g".
    static QString amplitudeText(double amplitude);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

private:
    struct Point {
        Reading reading;
        bool isCoolingDown;
    };

    struct Colors;
    struct Layout; // where things are drawn

    static Colors colorsNow();

    void paintEvent(QPaintEvent* event) override;
    void drawTimes(QPainter& painter, const Layout& layout) const;
    void drawLevels(QPainter& painter, const Axis& axis, const Layout& layout) const;
    void drawCooldown(QPainter& painter, const Layout& layout) const;
    void drawLines(QPainter& painter, const Layout& layout) const;
    void drawSlaps(QPainter& painter, const Layout& layout) const;
    double greatest(double (*of)(const Reading& reading)) const;
    void describeSlaps();

    std::deque<Point> points;
    std::vector<Plot::Slap> slaps;
    double threshold = 0.12;     // g
    double now = 0.0;            // seconds
    double lastMotion = -length; // seconds; of the last reading that is more than noise
};

} // namespace quiverly
