#pragma once

#include <string>
#include <vector>

namespace quiverly {

// Maps values to places in a drawing, linearly. Values outside go to its ends.
class Axis {
public:
    // `from` < `to`; `start` and `end` are the places of both, in either order.
    Axis(double from, double to, double start, double end) : from(from), to(to), start(start), end(end) {}

    double operator()(double value) const;

    bool contains(double value) const { return from <= value && value <= to; }
    bool overlaps(double first, double last) const { return first <= to && from <= last; }

    // Round values inside, at least `distance` apart in the drawing.
    std::vector<double> roundValues(double distance) const;

    // The same for times in seconds, whose round values are those of clocks.
    std::vector<double> roundTimes(double distance) const;

private:
    std::vector<double> multiples(double step) const;
    double valuesIn(double distance) const;

    double from, to, start, end;
};

// A number with so many digits after the point.
std::string fixed(double number, int digits);

// The same with at most three digits after the point, and no needless ones.
std::string shortest(double number);

} // namespace quiverly
