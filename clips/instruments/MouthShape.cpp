#include "clips/instruments/MouthShape.h"

#include <algorithm>
#include <cstddef>

#include "clips/synthesis/Curve.h"

namespace quiverly::clips {

std::array<double, 3> formantsAt(const std::vector<MouthPosition>& mouth, double along) {
    const auto next =
        std::find_if(mouth.begin(), mouth.end(), [along](const auto& position) { return position.at > along; });
    if (next == mouth.begin()) return mouth.front().shape.formants;
    const MouthPosition& before = *(next - 1);
    if (next == mouth.end()) return before.shape.formants;
    std::array<double, 3> formants{};
    for (std::size_t index = 0; index < formants.size(); ++index) {
        const Curve move{{before.at, before.shape.formants[index]}, {next->at, next->shape.formants[index]}};
        formants[index] = move(along);
    }
    return formants;
}

} // namespace quiverly::clips
