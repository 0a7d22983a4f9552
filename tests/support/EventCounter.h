#pragma once

#include <gtest/gtest.h>

#include <map>

#include <QApplication>
#include <QEvent>
#include <QTest>

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

// Nothing happens for a second: no timer runs out, nothing is painted.
inline void expectQuietSecond() {
    const EventCounter events;
    QTest::qWait(1000);
    EXPECT_EQ(events.count(QEvent::Timer), 0);
    EXPECT_EQ(events.count(QEvent::Paint), 0);
    EXPECT_EQ(events.count(QEvent::UpdateRequest), 0);
}

} // namespace quiverly
