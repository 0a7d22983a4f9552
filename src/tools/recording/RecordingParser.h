#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include <tl/expected.hpp>

#include "tools/recording/RecordingLine.h"

namespace quiverly {

// Understands the lines of a recording in their order; docs/recording-format.md describes them.
class RecordingParser {
public:
    // What the line says, which is given without its end; valid until the next call, null if it is one of those that
    // are skipped. The error is what is wrong with it. A malformed line ends the recording: none may be parsed after
    // it.
    tl::expected<const RecordingLine*, std::string> parse(std::string_view line);

private:
    // Each of these takes what it understands off the front of the line, and leaves it in `understood`.
    using Problem = tl::expected<void, std::string>;
    Problem takeAll(std::string_view line);
    Problem takeTime(std::string_view& line);
    Problem takeAction(std::string_view& line);
    Problem takeReport(std::string_view& line);

    RecordingLine understood;
    std::array<std::uint8_t, action::Report::longest> bytes = {}; // of the last report
    std::uint64_t time = 0;                                       // of the last line, in nanoseconds
    std::uint64_t calendar = 1'700'000'000'000'000'000U;          // what it read then, in nanoseconds after 1970
};

} // namespace quiverly
