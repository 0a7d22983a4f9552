#pragma once

#include "clips/synthesis/Signal.h"

namespace quiverly::clips {

// A second-order filter that does not click when it is retuned while it runs (the trapezoidal state-variable form,
// after V. Zavalishin, "The Art of VA Filter Design", 2012). Frequencies in hertz; quality 0.7 is flat, 20 rings.
class Filter {
public:
    struct Outputs {
        double low;
        double band; // gain 1 at its middle
        double high;
    };

    void tune(double hertz, double quality);
    Outputs operator()(double sample);

private:
    double tuning = 0;
    double damping = 1;
    double heldBand = 0;
    double heldLow = 0;
};

Signal lowPassed(Signal signal, const Curve& hertz, double quality = 0.7);
Signal bandPassed(Signal signal, const Curve& hertz, double quality);
Signal highPassed(Signal signal, const Curve& hertz, double quality = 0.7);

} // namespace quiverly::clips
