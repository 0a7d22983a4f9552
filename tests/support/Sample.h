#pragma once

#include <ostream>
#include <vector>

#include "sensing/AccelerometerReader.h"

namespace quiverly {

// One acceleration sample, in g.
struct Sample {
    double x = 0;
    double y = 0;
    double z = 0;

    bool operator==(const Sample&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const Sample& sample) {
    return out << '(' << sample.x << ", " << sample.y << ", " << sample.z << ')';
}

// Adds every sample of the reader to `samples`, which must live as long as they come.
inline void collect(AccelerometerReader& reader, std::vector<Sample>& samples) {
    reader.onSample = [&samples](double x, double y, double z) { samples.push_back({x, y, z}); };
}

} // namespace quiverly
