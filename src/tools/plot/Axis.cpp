#include "tools/plot/Axis.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>

namespace quiverly {

double Axis::operator()(double value) const {
    const double share = (std::clamp(value, from, to) - from) / (to - from);
    return start + share * (end - start);
}

std::vector<double> Axis::roundValues(double distance) const {
    const double least = valuesIn(distance);
    const double magnitude = std::pow(10, std::floor(std::log10(least)));
    for (const double factor : {1, 2, 5}) {
        if (factor * magnitude >= least) return multiples(factor * magnitude);
    }
    return multiples(10 * magnitude);
}

std::vector<double> Axis::roundTimes(double distance) const {
    const double least = valuesIn(distance);
    for (const double step : {10, 15, 30, 60, 120, 300, 600, 900, 1800, 3600, 7200, 14400, 43200, 86400}) {
        if (least > 5 && step >= least) return multiples(step);
    }
    return roundValues(distance);
}

std::vector<double> Axis::multiples(double step) const {
    std::vector<double> values;
    const auto last = static_cast<std::int64_t>(std::floor(to / step));
    for (auto count = static_cast<std::int64_t>(std::ceil(from / step)); count <= last; ++count) {
        values.push_back(static_cast<double>(count) * step);
    }
    return values;
}

double Axis::valuesIn(double distance) const {
    return distance / std::abs(end - start) * (to - from);
}

std::string fixed(double number, int digits) {
    char text[400]; // the longest double has 309 digits before the point
    const auto [end, error] = std::to_chars(text, text + sizeof text, number, std::chars_format::fixed, digits);
    return {text, end};
}

std::string shortest(double number) {
    std::string text = fixed(number, 3);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.ends_with('.')) text.pop_back();
    return text;
}

} // namespace quiverly
