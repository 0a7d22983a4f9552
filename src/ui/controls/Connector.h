#pragma once

#include <QWidget>

namespace quiverly {

// The bar between the badges of two steps; lit when the upper one is complete.
class Connector : public QWidget {
public:
    Connector();

    void show(bool complete);

private:
    void paintEvent(QPaintEvent* event) override;

    bool complete = false;
};

} // namespace quiverly
