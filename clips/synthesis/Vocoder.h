#pragma once

#include "clips/synthesis/Signal.h"

namespace quiverly::clips {

// A carrier made to speak: it takes the loudness of the speech band by band (H. Dudley, 1939). As long as the shorter
// of the two, with a peak of 1.
Signal vocoded(const Signal& speech, const Signal& carrier);

} // namespace quiverly::clips
