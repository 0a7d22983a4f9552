#pragma once

#include <initializer_list>
#include <vector>

namespace quiverly::clips {

// How one quantity of a sound (its pitch, its loudness, its brightness) changes while it lasts.
//
// A curve is given by points in rising order of time, which runs from 0 to 1 over the length of the sound. Between two
// points the value glides smoothly, before the first and after the last it stays. A plain number is a constant curve.
class Curve {
public:
    struct Point {
        double at; // fraction of the sound that has passed
        double value;
    };

    Curve(double constant) : points{{0, constant}} {}
    Curve(std::initializer_list<Point> points) : points(points) {}

    double operator()(double fraction) const;

    Curve operator*(double factor) const;

private:
    std::vector<Point> points;
};

} // namespace quiverly::clips
