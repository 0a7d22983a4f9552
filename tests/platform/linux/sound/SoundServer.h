#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>

#include "platform/linux/sound/Recording.h"
#include "support/ChildProcess.h"
#include "support/RuntimeFolder.h"

namespace quiverly {

// A private sound server with one device that nobody hears, and a recorder of what is played on it.
//
// While this lives, sound of this process and of those it starts goes to this server or, when it does not run, to
// none; it touches neither the user's sound server nor the user's files.
class SoundServer {
public:
    SoundServer();

    void start(); // and records from then on
    void kill();  // leaves its socket behind, as a crash does
    void freeze() { server->freeze(); }
    void thaw() { server->thaw(); }

    // Frames recorded so far, by this server run.
    std::size_t recordedFrames() const;

    // What was recorded from that frame on.
    Recording recordingSince(std::size_t frame) const;

    // Waits until that much more has been recorded.
    void listen(double seconds) const;

    // What the server's control program answers.
    std::string control(const std::string& arguments) const;

    std::size_t streams() const;                                           // that play something
    bool hasClient(const std::string& name) const;                         // a connected program of that name
    const std::filesystem::path& folder() const { return runtime.path(); } // for whatever the test likes

private:
    bool answers() const;

    RuntimeFolder runtime;
    std::optional<ChildProcess> server;
    std::optional<ChildProcess> recorder;
};

} // namespace quiverly
