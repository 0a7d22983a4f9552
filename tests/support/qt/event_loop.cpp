#include "support/qt/event_loop.h"

#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

struct Posted {
    QObject* receiver;
    std::unique_ptr<QEvent> event;
};

struct Timer {
    QObject* receiver;
    std::chrono::milliseconds interval;
    Clock::time_point end;
};

// Built by the first caller: events are posted, and functions registered, before main() begins.
struct Loop {
    std::mutex mutex;
    std::condition_variable postedOne;
    std::vector<Posted> posted; // in order

    // Of the main thread.
    QCoreApplication* application = nullptr;
    std::vector<void (*)()> startupFunctions;
    std::map<int, Timer> timers;
    int lastTimer = 0;
    bool quitting = false;
};

Loop& loop() {
    static Loop theLoop;
    return theLoop;
}

Posted takePosted() {
    const std::lock_guard lock(loop().mutex);
    if (loop().posted.empty()) return {};
    Posted first = std::move(loop().posted.front());
    loop().posted.erase(loop().posted.begin());
    return first;
}

// Of the timers that have come to their end, the one that came first; null if there is none.
std::map<int, Timer>::value_type* dueTimer() {
    std::map<int, Timer>::value_type* due = nullptr;
    for (auto& timer : loop().timers) {
        if (timer.second.end <= Clock::now() && (!due || timer.second.end < due->second.end)) due = &timer;
    }
    return due;
}

} // namespace

QThread* QThread::currentThread() {
    thread_local QThread current;
    return &current;
}

int QObject::startTimer(std::chrono::milliseconds delay, Qt::TimerType) {
    loop().timers[++loop().lastTimer] = {this, delay, Clock::now() + delay};
    return loop().lastTimer;
}

void QObject::killTimer(int number) {
    loop().timers.erase(number);
}

bool QObject::event(QEvent* event) {
    if (event->type() != QEvent::Timer) return false;
    timerEvent(static_cast<QTimerEvent*>(event));
    return true;
}

StartupFunction::StartupFunction(void (*function)()) {
    loop().startupFunctions.push_back(function);
}

QCoreApplication::QCoreApplication(int&, char**) {
    loop().application = this;
    for (const auto function : loop().startupFunctions) function();
}

QCoreApplication::~QCoreApplication() {
    loop().application = nullptr;
    loop().timers.clear();
    std::vector<Posted> thrownAway;
    const std::lock_guard lock(loop().mutex);
    thrownAway.swap(loop().posted);
}

QCoreApplication* QCoreApplication::instance() {
    return loop().application;
}

void QCoreApplication::postEvent(QObject* receiver, QEvent* event) {
    const std::lock_guard lock(loop().mutex);
    loop().posted.push_back({receiver, std::unique_ptr<QEvent>(event)});
    loop().postedOne.notify_one();
}

void QCoreApplication::processEvents() {
    for (Posted next = takePosted(); next.event; next = takePosted()) next.receiver->event(next.event.get());
    while (auto* const due = dueTimer()) {
        QTimerEvent event(due->first);
        due->second.end += due->second.interval;
        due->second.receiver->event(&event);
    }
}

int QCoreApplication::exec() {
    const auto end = Clock::now() + std::chrono::minutes(1);
    loop().quitting = false;
    while (!loop().quitting && Clock::now() < end) {
        processEvents();
        std::unique_lock lock(loop().mutex);
        loop().postedOne.wait_for(lock, std::chrono::milliseconds(10), [] { return !loop().posted.empty(); });
    }
    return loop().quitting ? 0 : 1;
}

void QCoreApplication::quit() {
    loop().quitting = true;
}
