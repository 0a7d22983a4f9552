#include "platform/linux/sound/Recording.h"

#include <cmath>
#include <span>

namespace quiverly {

namespace {

using Frame = Recording::Frame;

constexpr std::size_t pieceFrames = Recording::rate / 100; // 10 ms
constexpr double silence = 0.01;                           // root mean square below which nothing is heard

template<class Channel>
double rootMeanSquare(std::span<const Frame> frames, Channel channel) {
    double sum = 0;
    for (const Frame& frame : frames) sum += static_cast<double>(frame.*channel) * static_cast<double>(frame.*channel);
    return frames.empty() ? 0 : std::sqrt(sum / static_cast<double>(frames.size()));
}

// In Hz, rounded to 100, from the sign changes; 0 for silence.
int pitchOf(std::span<const Frame> frames) {
    if (rootMeanSquare(frames, &Frame::left) < silence) return 0;
    int changes = 0;
    for (std::size_t index = 1; index < frames.size(); ++index) {
        changes += (frames[index - 1].left < 0) != (frames[index].left < 0);
    }
    const double seconds = static_cast<double>(frames.size()) / Recording::rate;
    return static_cast<int>(std::lround(changes / (2 * seconds) / 100)) * 100;
}

Recording::Note noteOf(int pitch, std::span<const Frame> frames) {
    const std::span<const Frame> inside = frames.subspan(pieceFrames / 2, frames.size() - pieceFrames);
    return {.pitch = pitch,
            .seconds = static_cast<double>(frames.size()) / Recording::rate,
            .left = rootMeanSquare(inside, &Frame::left),
            .right = rootMeanSquare(inside, &Frame::right)};
}

} // namespace

std::vector<Recording::Note> Recording::notes() const {
    std::vector<Note> notes;
    std::size_t start = 0;
    int pitch = 0;
    const auto endNote = [&](std::size_t end) {
        if (pitch != 0 && end - start >= 2 * pieceFrames) notes.push_back(noteOf(pitch, {&frames[start], end - start}));
    };
    std::size_t piece = 0;
    for (; piece + pieceFrames <= frames.size(); piece += pieceFrames) {
        const int heard = pitchOf({&frames[piece], pieceFrames});
        if (heard == pitch) continue;
        endNote(piece);
        start = piece;
        pitch = heard;
    }
    endNote(piece);
    return notes;
}

std::vector<int> Recording::pitches() const {
    std::vector<int> pitches;
    for (const Note& note : notes()) pitches.push_back(note.pitch);
    return pitches;
}

} // namespace quiverly
