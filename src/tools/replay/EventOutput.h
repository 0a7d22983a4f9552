#pragma once

#include <string>
#include <system_error>

namespace quiverly {

// Standard output. What is to be written gathers in `text` until flush(); after a failure nothing more is written.
class EventOutput {
public:
    std::string text;

    void flush();

    // Why something could not be written; no error while all went well.
    std::error_code error() const { return failure; }

private:
    std::error_code failure;
};

} // namespace quiverly
