#pragma once

#include <cstddef>
#include <vector>

namespace quiverly::clips {

// One cycle of the air flow through the vocal folds, as its derivative, which is what the lips radiate: the LF model
// (G. Fant, J. Liljencrants, Q. Lin, "A four-parameter model of glottal flow", STL-QPSR 4/1985), its parameters tied to
// a single one, Rd, as in G. Fant, "The LF-model revisited", STL-QPSR 2-3/1995: 0.3 is a pressed voice, 1 an ordinary
// one, 2.7 a breathy one.
class Glottis {
public:
    explicit Glottis(double rd);

    // The derivative of the flow at a phase from 0 to 1, which is -1 where the folds close; it ends as it begins, at 0.
    double flowDerivative(double phase) const;

    // How far the folds are apart, 0 to 1.
    double openness(double phase) const;

private:
    double closing;   // phase at which they close,
    double returning; // and how long the closing takes: the longer, the duller the voice
    double decay;     // of the return
    double growth;    // of the wave while they are open,
    double turning;   // its angle per cycle,
    double start;     // and its size
};

// The cycles for all values of Rd, solved once.
const Glottis& glottisFor(double rd);

} // namespace quiverly::clips
