#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <tl/expected.hpp>

#include "tools/recording/RecordingLine.h"

namespace quiverly {

// Understands the lines of a recording in their order; docs/recording-format.md describes them.
class RecordingParser {
public:
    // What the line says, which is given without its end; nothing if it is one of those that are skipped. The error is
    // what is wrong with it. A malformed line ends the recording: none may be parsed after it.
    tl::expected<std::optional<RecordingLine>, std::string> parse(std::string_view line);

private:
    tl::expected<RecordingLine, std::string> understand(std::string_view line);
    tl::expected<Action, std::string> parseAction(std::string_view& line);

    std::uint64_t time = 0;                              // of the line before, in nanoseconds
    std::uint64_t calendar = 1'700'000'000'000'000'000U; // what it read then, in nanoseconds after 1970
};

} // namespace quiverly
