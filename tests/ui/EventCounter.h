#pragma once

#include <map>

#include <QApplication>
#include <QEvent>

namespace quiverly {

// Counts what the application's objects are sent while it lives.
class EventCounter : public QObject {
public:
    EventCounter() { qApp->installEventFilter(this); }

    int count(QEvent::Type type) const {
        const auto found = counts.find(type);
        return found == counts.end() ? 0 : found->second;
    }

private:
    bool eventFilter(QObject*, QEvent* event) override {
        ++counts[event->type()];
        return false;
    }

    std::map<QEvent::Type, int> counts;
};

} // namespace quiverly
