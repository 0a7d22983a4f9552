#pragma once

#include <QWidget>

namespace quiverly {

// The ring just outside the control that has the keyboard focus. It is visible while the user works with the keyboard:
// from the press of a key to the next click.
class FocusRing : public QWidget {
public:
    // Is visible while the control, or the part of it that it hands its focus to, has the focus.
    explicit FocusRing(QWidget& control);

    // What to surround, in the coordinates of the control: all of it, until told otherwise.
    void surround(const QRectF& part, double radius);

private:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

    bool isDue() const;
    bool isAround(const QObject& object) const;
    QWidget& surroundings() const;
    QRectF outline() const;
    void follow();

    QWidget& control;
    QRectF part; // null: all of the control
    double radius = 0.0;
};

} // namespace quiverly
