#pragma once

#include <initializer_list>
#include <vector>

namespace quiverly::clips {

// How one quantity (a pitch, a loudness, a brightness) moves while a sound lasts.
//
// Points are given by the fraction of the sound that has passed, 0 to 1, in rising order; between two points the value
// glides smoothly, before the first and after the last it rests. A plain number is a gesture that never moves.
class Gesture {
public:
    struct Point {
        double at;
        double value;
    };

    Gesture(double constant) : points{{0, constant}} {}
    Gesture(std::initializer_list<Point> points) : points(points) {}

    // So many equal strokes from low to high and back, rising in the first third of each.
    static Gesture strokes(int count, double low, double high);

    double operator()(double fraction) const;

    Gesture operator*(double factor) const;

private:
    std::vector<Point> points;
};

} // namespace quiverly::clips
