#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include <tl/expected.hpp>

#include "tools/recording/LineReader.h"
#include "tools/recording/RecordingLine.h"
#include "tools/recording/RecordingParser.h"

namespace quiverly {

// A recording in a file: gives out its lines one after the other, however many they are.
class Recording {
public:
    // "-" stands for standard input. beforeRead is called whenever the file is about to be read, which may take long.
    explicit Recording(const std::string& name, std::function<void()> beforeRead = doNothing);

    // The next line that says something, valid until the next call; null at the end. The error, "NAME: reason" or
    // "NAME:LINE: what is wrong", is an end too: nothing may be asked for after it.
    tl::expected<const RecordingLine*, std::string> next();

private:
    static void doNothing() {}

    std::string name;
    LineReader lines;
    RecordingParser parser;
    std::int64_t lineNumber = 0;
};

} // namespace quiverly
