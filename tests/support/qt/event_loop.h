#pragma once

// The part of Qt's event loop that the main queue and its tests use, declared after Qt's published documentation: an
// event loop that the thread sanitizer can look into, which Debian's Qt is not.

#include <chrono>

namespace Qt {
enum TimerType { PreciseTimer };
}

class QEvent {
public:
    enum Type { Timer = 1, User = 1000 };

    explicit QEvent(Type type) : ownType(type) {}
    virtual ~QEvent() = default;

    Type type() const { return ownType; }

private:
    Type ownType;
};

class QTimerEvent : public QEvent {
public:
    explicit QTimerEvent(int number) : QEvent(Timer), number(number) {}

    int timerId() const { return number; }

private:
    int number;
};

class QThread {
public:
    static QThread* currentThread();
};

class QObject {
public:
    QObject() = default;
    QObject(const QObject&) = delete;
    QObject& operator=(const QObject&) = delete;
    virtual ~QObject() = default;

    QThread* thread() const { return owner; }

    int startTimer(std::chrono::milliseconds delay, Qt::TimerType);
    void killTimer(int number);

    virtual bool event(QEvent* event);

protected:
    virtual void timerEvent(QTimerEvent*) {}

private:
    QThread* owner = QThread::currentThread();
};

// Events are posted by any thread, also before there is an application; all else belongs to the main thread. An
// application that ends throws away its events and timers.
class QCoreApplication : public QObject {
public:
    QCoreApplication(int& count, char** arguments);
    ~QCoreApplication() override;

    static QCoreApplication* instance();
    static void postEvent(QObject* receiver, QEvent* event);
    static void processEvents();
    static int exec(); // until quit(), or for a minute
    static void quit();
};

class QEventLoop {
public:
    void processEvents() { QCoreApplication::processEvents(); }
};

struct StartupFunction {
    explicit StartupFunction(void (*function)());
};

#define Q_COREAPP_STARTUP_FUNCTION(function)                                                                           \
    namespace {                                                                                                        \
    const StartupFunction startup_##function(function);                                                                \
    }
