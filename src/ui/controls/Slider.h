#pragma once

#include <functional>

#include <QSlider>

namespace quiverly {

class FocusRing;

// A slider in steps of a hundredth. It shows any value, at the nearer end of its range if the value lies outside.
// onMove is called with what the user chooses, n/100, and never because a value is shown.
class Slider : public QSlider {
public:
    // `name` is for screen readers; the range is in hundredths.
    Slider(const QString& name, int minimum, int maximum);

    void show(double value);
    double shown() const; // the value given to show(), or what the user has chosen since

    void choose(double value); // does as if the user had moved the handle there: to the nearest step in the range

    std::function<void(double value)> onMove;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

private:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void sliderChange(SliderChange change) override;
    void paintEvent(QPaintEvent* event) override;

    void moveHandle(double x);
    void didMove();
    QRectF groove() const;
    QRectF handle() const;
    double travel() const; // pixels, of the handle
    int positionOf(double value) const;
    int positionAt(double x) const;

    double shownValue;
    FocusRing* ring;
    double grip = 0.0; // pixels from the handle's centre to where the mouse holds it
};

} // namespace quiverly
