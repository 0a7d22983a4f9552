#include "tools/recording/Recording.h"

#include <span>
#include <utility>

namespace quiverly {

Recording::Recording(const std::string& name, std::function<void()> beforeRead)
    : name(name),
      file(name),
      source([this, beforeRead = std::move(beforeRead)](std::span<char> chunk) {
          beforeRead();
          return file.read(chunk);
      }),
      parser(source) {}

std::optional<RecordingLine> Recording::next() {
    auto line = parser.next();
    if (file.error()) return std::nullopt; // which has cut the line
    return line;
}

std::optional<std::string> Recording::problem() const {
    if (file.error()) return name + ": " + file.error().message();
    if (parser.problem()) return name + ':' + std::to_string(parser.lineNumber()) + ": " + *parser.problem();
    return std::nullopt;
}

} // namespace quiverly
