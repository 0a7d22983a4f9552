#pragma once

#include <QEvent>
#include <QWidget>

namespace quiverly {

// Counts how often a widget is painted.
class Paintings : public QObject {
public:
    explicit Paintings(QWidget& widget) { widget.installEventFilter(this); }

    int count = 0;

private:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint) ++count;
        return false;
    }
};

} // namespace quiverly
