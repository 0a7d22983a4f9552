#pragma once

#include <QBasicTimer>

#include "ui/controls/Picture.h"

namespace quiverly {

// Turns for as long as it can be seen, one step in 120 milliseconds; costs nothing otherwise. As large as its place.
class Spinner : public Picture {
public:
    Spinner();

private:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

    QBasicTimer timer;
    int step = 0;
};

} // namespace quiverly
