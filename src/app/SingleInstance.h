#pragma once

#include <functional>
#include <string>

#include <QObject>

#include "sockets/FileDescriptor.h"

namespace quiverly {

// Keeps a second copy of the program from running for the same user and runtime folder.
//
// The first copy holds a place that no file marks and that is free again when the program is gone, however it ended. A
// later copy asks it to show its window and waits for the answer. What another user holds does not count.
class SingleInstance : public QObject {
public:
    enum class Place {
        first,      // this copy runs; onCall is called when another one is started
        taken,      // the first copy has shown its window
        unanswered, // there is a first copy, but it does not respond
    };

    explicit SingleInstance(std::function<void()> onCall);

    Place place() const { return found; }

private:
    Place find();
    bool hold();
    void answer();

    std::string name; // of the abstract socket
    std::function<void()> onCall;
    FileDescriptor listener;
    Place found;
};

} // namespace quiverly
