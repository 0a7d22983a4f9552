#pragma once

#include <vector>

#include "clips/instruments/Voice.h"
#include "clips/synthesis/Stage.h"

namespace quiverly::clips {

// Many throats singing in the manner of one: every key (of the piano, 69 the tuning A) by several singers, each a
// little out of tune and of time with the others and in a place of its own. The manner's pitch is a factor on each
// key's, so 1 holds the note.
void singTogether(Stage& stage, const std::vector<double>& keys, const Voice& manner, double at, double gain,
                  Random& random);

} // namespace quiverly::clips
