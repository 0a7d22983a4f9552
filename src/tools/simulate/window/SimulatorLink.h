#pragma once

#include <functional>

#include <QByteArray>
#include <QObject>

#include "tools/simulate/WindowMessage.h"

class QSocketNotifier;

namespace quiverly {

// The window's end of the pipes to the simulated laptop. No call waits: a command that the pipe does not take is
// dropped. Malformed lines are ignored. Main thread only.
class SimulatorLink : public QObject {
public:
    std::function<void(const window::Message& message)> onMessage;
    std::function<void()> onEnd; // the laptop is gone

    // The descriptors stay the caller's.
    SimulatorLink(int messages, int commands);

    void send(const QByteArray& command); // without the line's end

private:
    void read();

    int messages;
    int commands;
    QSocketNotifier* notifier;
    QByteArray unfinishedLine;
};

} // namespace quiverly
