#include "tools/plot/Trace.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace quiverly {

void Trace::add(const Reading& reading) {
    while (content.size() == mostBins) coarsen();
    append({.index = static_cast<std::int64_t>(std::floor(reading.seconds / length)),
            .last = reading,
            .lowest = reading.magnitude,
            .highest = reading.magnitude,
            .highestScore = reading.score});
}

void Trace::append(const Bin& bin) {
    if (content.empty() || content.back().index != bin.index) {
        content.push_back(bin);
        return;
    }
    Bin& shared = content.back();
    shared.last = bin.last;
    shared.lowest = std::min(shared.lowest, bin.lowest);
    shared.highest = std::max(shared.highest, bin.highest);
    shared.highestScore = std::max(shared.highestScore, bin.highestScore);
}

void Trace::coarsen() {
    length *= 2;
    for (Bin bin : std::exchange(content, {})) {
        bin.index /= 2;
        append(bin);
    }
}

} // namespace quiverly
