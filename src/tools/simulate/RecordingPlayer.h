#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/recording/Recording.h"

namespace quiverly {

// Gives out the reports of a recording at their times, the first one at time 0. Lines that are commands are ignored:
// they steer the application, which a laptop cannot do. Constant memory however long the recording is.
class RecordingPlayer {
public:
    explicit RecordingPlayer(const std::string& file);

    // The next report, when it is due by then.
    std::optional<std::vector<std::uint8_t>> take(std::chrono::milliseconds sinceFirst);

    // Nothing is left to play. Unless there is a problem, all was played.
    bool hasEnded() const { return !next; }

    // "FILE: reason" or "FILE:LINE: what is wrong".
    std::optional<std::string> problem() const { return unusable; }

private:
    struct Report {
        double seconds; // since the beginning of the recording
        std::vector<std::uint8_t> bytes;
    };

    std::optional<Report> readReport();

    Recording recording;
    std::optional<std::string> unusable;
    std::optional<Report> next;
    double begin = 0.0; // of the first report, in seconds
};

} // namespace quiverly
