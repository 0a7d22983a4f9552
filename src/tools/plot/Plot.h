#pragma once

#include <string>
#include <vector>

#include "tools/plot/Trace.h"

namespace quiverly {

// The stretches of time during which something holds, in seconds.
class Spans {
public:
    struct Span {
        double from, to;
    };

    // Tells whether it holds at a moment; the moments come in the order of time.
    void observe(double seconds, bool holds) {
        if (holds && !open) content.push_back({.from = seconds, .to = seconds});
        if (holds || open) content.back().to = seconds;
        open = holds;
    }

    const std::vector<Span>& all() const { return content; }

private:
    std::vector<Span> content;
    bool open = false;
};

// What a recording looks like to the detector. Times are in seconds since the recording began, texts are UTF-8.
struct Plot {
    struct Slap {
        double seconds;
        double amplitude; // g
    };
    struct Clip {
        double seconds;
        std::string name;
    };

    std::string title;
    Trace trace;
    std::vector<Slap> slaps;
    std::vector<Clip> clips;
    Spans cooldowns; // no slap can follow yet
    Spans settling;  // slaps are ignored, because a check has just begun
};

} // namespace quiverly
