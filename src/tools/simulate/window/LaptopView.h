#pragma once

#include <functional>
#include <optional>
#include <vector>

#include <QAbstractButton>
#include <QBasicTimer>
#include <QElapsedTimer>

#include "tools/simulate/window/LaptopPicture.h"
#include "tools/simulate/window/Movement.h"

namespace quiverly {

class FocusRing;

// The laptop on the screen. Whoever presses it slaps it on release, where the press began and as hard as it was held
// and dragged; the strength shows at the pointer. Shows what is done to the laptop, however that came about.
//
// Draws nothing and has no timer while nothing moves. For users who want no motion the laptop stays still, and a slap
// shows as a mark.
class LaptopView : public QAbstractButton {
public:
    static constexpr double leastPeak = 0.3; // g, of a short press
    static constexpr double mostPeak = 2.0;  // g

    // Of a slap that was held for so long and dragged so far, in g, rounded to hundredths.
    static double peakOf(double seconds, double pixels);

    std::function<void(double peak)> onSlap; // g

    LaptopView();

    // Slaps it as a click or a key does: it shows once the command that onSlap leads to is obeyed.
    void slap(double peak, LaptopPicture::Spot spot = {});

    void obey(const command::Command& command);
    const Movement& movement() const { return moves; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    std::function<double()> seconds; // the time

private:
    struct Press {
        LaptopPicture::Spot spot;
        QPointF from, to; // of the pointer, in the widget
        double began;     // seconds
    };
    struct Hit {
        LaptopPicture::Spot spot;
        double began; // seconds
        double peak;  // g
    };

    bool event(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

    void beginPress(const LaptopPicture::Spot& spot, const QPointF& pointer);
    void endPress();
    void cancelPress();
    double pressPeak() const;
    void drawPress(QPainter& painter) const;
    std::vector<LaptopPicture::Wave> waves() const;
    std::vector<int> keysDown() const;
    bool isMoving() const;
    void follow();

    LaptopPicture laptop;
    Movement moves;
    std::optional<Press> press;
    std::vector<LaptopPicture::Spot> expected; // where the slaps were that are yet to be obeyed
    std::vector<Hit> hits;
    QBasicTimer timer;
    QElapsedTimer clock;
    FocusRing* ring;
};

} // namespace quiverly
