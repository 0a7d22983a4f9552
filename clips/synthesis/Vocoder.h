#pragma once

#include "clips/synthesis/Signal.h"

namespace quiverly::clips {

// A carrier made to speak: in each band of frequencies it takes on the loudness of the speech (H. Dudley, 1939). As
// long as the shorter of the two, with a peak of 1.
Signal vocoded(const Signal& speech, const Signal& carrier);

} // namespace quiverly::clips
