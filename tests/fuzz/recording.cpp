// What a recording may hold. However small the buffer is through which it is read, its lines say the same.

#include <cstddef>
#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "fuzz/Packets.h"
#include "tools/recording/LineReader.h"
#include "tools/recording/RecordingParser.h"

using namespace quiverly;

namespace {

struct Line {
    double seconds;
    calendar::TimePoint calendar;
    std::size_t action; // its index
    std::vector<std::uint8_t> report;

    bool operator==(const Line&) const = default;
};

Line copyOf(const RecordingLine& line) {
    Line copy{.seconds = line.seconds, .calendar = line.calendar, .action = line.action.index(), .report = {}};
    if (const auto* report = std::get_if<action::Report>(&line.action)) {
        copy.report.assign(report->bytes.begin(), report->bytes.end());
    }
    return copy;
}

struct Content {
    std::vector<Line> lines;
    bool isMalformed = false;
};

Content contentOf(std::string_view bytes, std::size_t bufferSize) {
    LineReader reader(
        [rest = bytes](std::span<char> chunk) mutable -> tl::expected<std::size_t, std::error_code> {
            const std::size_t count = rest.copy(chunk.data(), chunk.size());
            rest.remove_prefix(count);
            return count;
        },
        bufferSize);
    RecordingParser parser;
    Content content;
    for (auto text = reader.next(); text && *text; text = reader.next()) {
        const auto line = parser.parse(**text);
        if (!line) {
            content.isMalformed = true;
            break;
        }
        if (*line != nullptr) content.lines.push_back(copyOf(**line));
    }
    return content;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::string bytes(data + 1, data + size);
    const Content content = contentOf(bytes, 65536);
    const Content again = contentOf(bytes, 1U + data[0]);
    require(content.isMalformed == again.isMalformed);
    require(content.lines == again.lines);
    for (std::size_t index = 0; index < content.lines.size(); ++index) {
        require(content.lines[index].report.size() <= 256);
        require(index == 0 || content.lines[index - 1].seconds <= content.lines[index].seconds);
    }
    return 0;
}
