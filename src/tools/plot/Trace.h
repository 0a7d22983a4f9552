#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace quiverly {

// What the detector made of one sample.
struct Reading {
    double seconds;   // since the recording began
    double magnitude; // g, as all that follow
    double baseline;
    double score;
    double threshold;
};

// The course of the readings, in a bounded amount of memory: readings that lie close together share a bin, and whenever
// there are too many bins each becomes twice as long.
class Trace {
public:
    struct Bin {
        std::int64_t index; // of the stretch of time that it covers
        Reading last;
        double lowest, highest; // magnitude
        double highestScore;
    };

    static constexpr std::size_t mostBins = 8192;

    void add(const Reading& reading); // in the order of time

    const std::vector<Bin>& bins() const { return content; } // in the order of time
    double binLength() const { return length; }              // seconds

private:
    void append(const Bin& bin);
    void coarsen();

    std::vector<Bin> content;
    double length = 1.0 / 1024;
};

} // namespace quiverly
