#pragma once

#include <filesystem>
#include <functional>
#include <optional>

#include <QByteArray>
#include <QObject>

#include "sockets/FileDescriptor.h"

namespace quiverly {

// Keeps a second copy of the program from running for the same user and runtime folder.
//
// The first copy holds a lock, which the kernel frees when the program is gone, however it ended. A later copy asks it
// to show its window, and waits for the answer. Lock and socket are in a folder that only the user enters: in
// $XDG_RUNTIME_DIR; where that is not private, in a private folder in `shared`. Where there is no such
// folder, every copy is a first one.
class SingleInstance : public QObject {
public:
    enum class Place {
        first,      // this copy runs; onCall is called when another one is started
        taken,      // the first copy has shown its window
        unanswered, // there is a first copy, but it does not respond
    };

    // Called when another copy is started: with the desktop's token for bringing a window to the front, or nothing.
    using OnCall = std::function<void(const QByteArray& token)>;

    // Sends the first copy this token, cut to a kilobyte.
    explicit SingleInstance(OnCall onCall, const QByteArray& token = {}, const std::filesystem::path& shared = "/tmp");
    ~SingleInstance() override;

    Place place() const { return found; }

private:
    Place find();
    bool hold();
    void listen();
    bool accept();

    std::optional<std::filesystem::path> folder;
    OnCall onCall;
    QByteArray token;
    FileDescriptor lock;
    FileDescriptor listener;
    Place found;
};

} // namespace quiverly
