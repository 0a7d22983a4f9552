#include "platform/main_queue.h"

#include <array>
#include <atomic>
#include <chrono>
#include <map>
#include <new>
#include <utility>

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QTimerEvent>

#include "platform/shared/JobQueue.h"

namespace quiverly {

namespace {

// Makes Qt's event loop run a turn of the jobs. Memory is kept for the two that there are at most in a steady flow, one
// that runs its turn and one that waits, so that a sample costs no allocation but that of its job.
class Wake : public QEvent {
public:
    Wake() : QEvent(QEvent::User) {}

    static void* operator new(std::size_t size) {
        for (auto& place : spare) {
            if (void* const memory = place.exchange(nullptr)) return memory;
        }
        return ::operator new(size);
    }

    static void operator delete(void* memory) {
        for (auto& place : spare) {
            void* empty = nullptr;
            if (place.compare_exchange_strong(empty, memory)) return;
        }
        ::operator delete(memory);
    }

private:
    static inline std::array<std::atomic<void*>, 2> spare = {};
};

// Runs a turn of the jobs when Qt's event loop hands it the event that woke it.
class MainQueue : public QObject {
public:
    void push(mainQueue::Job job) {
        if (jobs.push(std::move(job))) wake();
    }

    // The job of an application that ends first is never run.
    void pushAfter(std::chrono::milliseconds delay, mainQueue::Job job) {
        delayed.insert_or_assign(startTimer(delay, Qt::PreciseTimer), std::move(job));
    }

    void wake() { QCoreApplication::postEvent(this, new Wake); }

private:
    bool event(QEvent* event) override {
        if (event->type() != QEvent::User) return QObject::event(event);
        if (std::exchange(running, true)) {
            wokenWhileRunning = true; // by an event loop inside a job: that job's turn has to end first
            return true;
        }
        jobs.runTurn();
        running = false;
        if (std::exchange(wokenWhileRunning, false)) wake();
        return true;
    }

    void timerEvent(QTimerEvent* event) override {
        killTimer(event->timerId());
        push(std::move(delayed.extract(event->timerId()).mapped()));
    }

    JobQueue jobs;
    std::map<int, mainQueue::Job> delayed; // by the number of their timer
    bool running = false;
    bool wokenWhileRunning = false;
};

// Belongs to the thread that loads the program, which is the main thread, whichever thread posts first. Never
// destroyed, so that posting is safe at any time: what finds no application waits for the next one, which may never
// come.
MainQueue& queue = *new MainQueue;

// An application that ends throws away the events that were to wake the queue.
void wakeQueue() {
    queue.wake();
}
Q_COREAPP_STARTUP_FUNCTION(wakeQueue)

} // namespace

void mainQueue::post(Job job) {
    queue.push(std::move(job));
}

void mainQueue::postAfter(double seconds, Job job) {
    if (!QCoreApplication::instance()) return; // no timers without it
    const std::chrono::duration<double> delay(seconds);
    queue.pushAfter(std::chrono::ceil<std::chrono::milliseconds>(delay), std::move(job));
}

} // namespace quiverly
