#include "tools/simulate/RecordingPlayer.h"

#include <utility>

namespace quiverly {

RecordingPlayer::RecordingPlayer(const std::string& file) : recording(file), next(readReport()) {
    if (next) begin = next->seconds;
}

std::optional<std::vector<std::uint8_t>> RecordingPlayer::take(std::chrono::milliseconds sinceFirst) {
    if (!next || std::chrono::duration<double>(next->seconds - begin) > sinceFirst) return std::nullopt;
    return std::exchange(next, readReport())->bytes;
}

std::optional<RecordingPlayer::Report> RecordingPlayer::readReport() {
    auto line = recording.next();
    for (; line && *line; line = recording.next()) {
        if (auto* report = std::get_if<action::Report>(&(*line)->action)) {
            return Report{.seconds = (*line)->seconds, .bytes = std::move(report->bytes)};
        }
    }
    if (!line) unusable = line.error();
    return std::nullopt;
}

} // namespace quiverly
