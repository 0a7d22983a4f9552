#pragma once

#include <cstddef>
#include <vector>

namespace quiverly {

// What was heard: stereo at 48,000 frames a second, 1 being full scale.
struct Recording {
    struct Frame {
        float left;
        float right;
    };

    static constexpr std::size_t rate = 48'000;

    // A stretch of one pure tone. Nothing is said of stretches shorter than 20 ms: where one tone cuts off another,
    // both are in one piece of the analysis.
    struct Note {
        int pitch;      // in Hz, rounded to 100
        double seconds; // to a hundredth or so
        double left;    // root mean square of its inside
        double right;
    };

    std::vector<Note> notes() const;
    std::vector<int> pitches() const; // of the notes

    std::vector<Frame> frames;
};

} // namespace quiverly
