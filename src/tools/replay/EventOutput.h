#pragma once

#include <cstdint>
#include <string>
#include <system_error>

namespace quiverly {

// Standard output, and beside it a line of progress where standard error is a terminal.
//
// What is to be written gathers in `text` until flush().
class EventOutput {
public:
    std::string text;

    // Writes the text, unless something failed before.
    void flush();

    // Why something could not be written; no error while all went well.
    std::error_code error() const { return failure; }

private:
    std::error_code failure;
};

} // namespace quiverly
