#pragma once

#include <QBasicTimer>
#include <QWidget>

namespace quiverly {

// Turns one step every 120 milliseconds while it is visible, and costs nothing otherwise. Stands still for users who
// want no motion. Fills its geometry.
class Spinner : public QWidget {
public:
    Spinner();

private:
    void turn();
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

    QBasicTimer timer;
    int step = 0;
};

} // namespace quiverly
