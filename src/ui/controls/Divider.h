#pragma once

#include <QWidget>

namespace quiverly {

// A plain horizontal line.
class Divider : public QWidget {
public:
    Divider();

private:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace quiverly
