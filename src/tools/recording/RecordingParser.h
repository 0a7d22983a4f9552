#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "tools/recording/ByteSource.h"
#include "tools/recording/Decimal.h"
#include "tools/recording/RecordingLine.h"

namespace quiverly {

// Reads a recording line by line and gives out those that say something; docs/recording-format.md describes the format.
//
// A line is given out only when all of it is right. The first one that is not ends the recording. A long line needs no
// more memory than a short one.
class RecordingParser {
public:
    explicit RecordingParser(ByteSource& source) : source(source) {}

    // Nothing at the end of the recording, which a malformed line is too.
    std::optional<RecordingLine> next();

    // What is wrong with the line that ended the recording; nothing if none was malformed.
    const std::optional<std::string>& problem() const { return malformed; }

    // Number of the line that was read last, the first being 1. Every line counts.
    std::int64_t lineNumber() const { return number; }

private:
    // The grammar. Each function takes its part of the line off the source or ends the line as malformed.
    RecordingLine readLine();
    double readTime();
    Action readAction();
    action::Report readReport(const std::string& digits);
    Action readCommand(const std::string& name);
    template<class Value, std::size_t count>
    Value readChoice(const std::pair<const char*, Value> (&choices)[count]);
    double readThreshold();
    action::ClockJump readClockJump();
    Decimal readDecimal();
    std::string readWord();

    void skipBlanks();
    bool takeLineEnd();
    bool atLineEnd();
    bool atWordEnd();
    [[noreturn]] void fail(const std::string& what);

    ByteSource& source;
    std::int64_t number = 0;
    std::optional<std::string> malformed;
    std::uint64_t time = 0;                              // of the line before, in nanoseconds
    std::uint64_t calendar = 1'700'000'000'000'000'000U; // what it read then, in nanoseconds after 1970
};

} // namespace quiverly
