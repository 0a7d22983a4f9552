#include "tools/recording/Recording.h"

#include <memory>
#include <span>
#include <utility>

#include "tools/recording/InputFile.h"

namespace quiverly {

namespace {

LineReader::Read reader(const std::string& name, std::function<void()> beforeRead) {
    const auto file = std::make_shared<tl::expected<InputFile, std::error_code>>(InputFile::open(name));
    return [file, beforeRead = std::move(beforeRead)](std::span<char> chunk) {
        beforeRead();
        return file->and_then([chunk](InputFile& opened) { return opened.read(chunk); });
    };
}

} // namespace

Recording::Recording(const std::string& name, std::function<void()> beforeRead)
    : name(name), lines(reader(name, std::move(beforeRead))) {}

tl::expected<const RecordingLine*, std::string> Recording::next() {
    for (;;) {
        const auto text = lines.next();
        if (!text) return tl::unexpected(name + ": " + text.error().message());
        if (!*text) return nullptr;
        ++lineNumber;
        const auto line = parser.parse(**text);
        if (!line) return tl::unexpected(name + ':' + std::to_string(lineNumber) + ": " + line.error());
        if (*line != nullptr) return *line;
    }
}

} // namespace quiverly
