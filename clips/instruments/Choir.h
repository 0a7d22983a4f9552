#pragma once

#include <vector>

#include "clips/instruments/Voice.h"
#include "clips/synthesis/Stage.h"

namespace quiverly::clips {

// A choir: every key (as keyPitch() counts them) is sung by several singers, each a little out of tune and out of time
// with the others and in a place of its own. All of them sing like the model, whose pitch is a factor on that of the
// key: 1 holds the note.
void singTogether(Stage& stage, const std::vector<double>& keys, const Voice& model, double at, double gain,
                  RandomNumbers& random);

} // namespace quiverly::clips
