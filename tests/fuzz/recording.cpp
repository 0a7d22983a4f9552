// What a recording may hold. However small the buffer is through which it is read, its lines say the same.

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "fuzz/Packets.h"
#include "tools/recording/LineReader.h"
#include "tools/recording/RecordingParser.h"

using namespace quiverly;

namespace {

struct Content {
    std::vector<RecordingLine> lines;
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
        auto line = parser.parse(**text);
        if (!line) {
            content.isMalformed = true;
            break;
        }
        if (*line) content.lines.push_back(**std::move(line));
    }
    return content;
}

bool areEqual(const RecordingLine& one, const RecordingLine& other) {
    const auto* report = std::get_if<action::Report>(&one.action);
    const auto* otherReport = std::get_if<action::Report>(&other.action);
    return one.seconds == other.seconds && one.calendar == other.calendar &&
           one.action.index() == other.action.index() && (report == nullptr || report->bytes == otherReport->bytes);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::string bytes(data + 1, data + size);
    const Content content = contentOf(bytes, 65536);
    const Content again = contentOf(bytes, 1U + data[0]);
    require(content.isMalformed == again.isMalformed);
    require(std::ranges::equal(content.lines, again.lines, areEqual));
    for (std::size_t index = 0; index < content.lines.size(); ++index) {
        const auto* report = std::get_if<action::Report>(&content.lines[index].action);
        require(report == nullptr || report->bytes.size() <= 256);
        require(index == 0 || content.lines[index - 1].seconds <= content.lines[index].seconds);
    }
    return 0;
}
