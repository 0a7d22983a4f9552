#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <tl/expected.hpp>

#include "tools/recording/Recording.h"

namespace quiverly {

// Gives out the reports of a recording at their times, the first one at time 0. Lines that are commands are ignored:
// they steer the application, which a laptop cannot do. Constant memory however long the recording is.
class RecordingPlayer {
public:
    using Bytes = std::vector<std::uint8_t>;

    // Errors are of the form "FILE: reason" or "FILE:LINE: what is wrong". Opening reads up to the first report.
    static tl::expected<RecordingPlayer, std::string> open(const std::string& file);

    // The next report, when it is due by then.
    tl::expected<std::optional<Bytes>, std::string> take(std::chrono::milliseconds sinceFirst);

    // Whether all has been played.
    bool hasEnded() const { return next && !*next; }

private:
    struct Report {
        double seconds; // since the beginning of the recording
        Bytes bytes;
    };
    using Next = tl::expected<std::optional<Report>, std::string>;

    explicit RecordingPlayer(const std::string& file) : recording(file) {}

    Next readReport();

    Recording recording;
    Next next;
    double begin = 0.0; // of the first report, in seconds
};

} // namespace quiverly
