#pragma once

#include <cmath>

#include "clips/synthesis/Signal.h"

namespace quiverly::clips {

inline Stereo inBothChannels(const Signal& signal) {
    return {signal, signal};
}

// The root mean square of the difference of two signals of equal length, of full scale.
inline double differenceOf(const Signal& one, const Signal& other) {
    double sum = 0;
    for (std::size_t index = 0; index < one.size(); ++index) {
        sum += (one[index] - other[index]) * (one[index] - other[index]);
    }
    return std::sqrt(sum / static_cast<double>(one.size()));
}

} // namespace quiverly::clips
