#pragma once

#include <functional>
#include <optional>
#include <string>

#include "tools/recording/ByteSource.h"
#include "tools/recording/InputFile.h"
#include "tools/recording/RecordingLine.h"
#include "tools/recording/RecordingParser.h"

namespace quiverly {

// A recording in a file: gives out its lines one after the other, in constant memory however long it is.
class Recording {
public:
    // "-" stands for standard input. beforeRead is called whenever the file is about to be read, which may take long.
    explicit Recording(
        const std::string& name, std::function<void()> beforeRead = [] {});

    // The next line that says something; nothing at the end, be it that of the file or a problem.
    std::optional<RecordingLine> next();

    // Why there are no more lines, "NAME: reason" or "NAME:LINE: what is wrong"; nothing while all is well.
    std::optional<std::string> problem() const;

private:
    std::string name;
    InputFile file;
    ByteSource source;
    RecordingParser parser;
};

} // namespace quiverly
