#include "tools/simulate/RecordingPlayer.h"

#include <utility>

namespace quiverly {

tl::expected<RecordingPlayer, std::string> RecordingPlayer::open(const std::string& file) {
    RecordingPlayer player(file);
    player.next = player.readReport();
    if (!player.next) return tl::unexpected(player.next.error());
    if (*player.next) player.begin = (*player.next)->seconds;
    return player;
}

tl::expected<std::optional<RecordingPlayer::Bytes>, std::string>
RecordingPlayer::take(std::chrono::milliseconds sinceFirst) {
    if (!next) return tl::unexpected(next.error());
    if (!*next || std::chrono::duration<double>((*next)->seconds - begin) > sinceFirst) return std::nullopt;
    return std::move(*std::exchange(next, readReport()))->bytes;
}

RecordingPlayer::Next RecordingPlayer::readReport() {
    for (;;) {
        auto line = recording.next();
        if (!line) return tl::unexpected(line.error());
        if (!*line) return std::nullopt;
        if (const auto* report = std::get_if<action::Report>(&(*line)->action)) {
            return Report{.seconds = (*line)->seconds, .bytes = {report->bytes.begin(), report->bytes.end()}};
        }
    }
}

} // namespace quiverly
