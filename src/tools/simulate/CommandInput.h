#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace quiverly {

// The lines that come in at a descriptor; the caller waits for them.
//
// A read that fails, as one from a terminal does while the program is in the background, is tried again a second later.
class CommandInput {
public:
    static constexpr std::size_t longestLine = 1000; // bytes

    // The caller keeps owning the descriptor; a negative one has no lines.
    explicit CommandInput(int descriptor) : input(descriptor) {}

    // What to wait for: negative after the end, and during the pause after a failed read.
    int descriptor() const { return pause() ? -1 : input; }

    bool hasEnded() const { return input < 0; }

    // What is left of that pause; nothing while there is none.
    std::optional<std::chrono::nanoseconds> pause() const;

    // The lines that one read completes, without their ends; the last line of the input may lack one. A line that is
    // too long is cut to one byte more than longestLine. Waits if there is nothing to read yet.
    std::vector<std::string> read();

private:
    using Clock = std::chrono::steady_clock;

    int input;
    Clock::time_point nextTry;
    std::string unfinishedLine;
};

} // namespace quiverly
