#pragma once

#include <functional>

#include <QSlider>

namespace quiverly {

// A slider over hundredths. It shows any value, the nearest end standing for what lies outside its range, and showing
// never writes: onMove is called with what the user chooses, n/100, and with nothing else.
class Slider : public QSlider {
public:
    // `name` is what a screen reader calls it; range in hundredths.
    Slider(const QString& name, int minimum, int maximum);

    void show(double value);
    double shown() const; // as it was given, or as the user chose it

    void choose(double value); // as if the user had moved there: into the range, to the nearest step

    std::function<void(double value)> onMove;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

private:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

    void moveHandle(double x);
    void didMove();
    QRectF groove() const;
    QPointF handleCentre() const;
    int positionOf(double value) const;
    int positionAt(double x) const;

    double shownValue;
    double grip = 0.0; // pixels from the handle's centre to where the mouse holds it
};

} // namespace quiverly
