#pragma once

#include "clips/instruments/Cry.h"

namespace quiverly::clips {

// Who is heard in the packs. Women's and children's resonances are not those of a man times one factor: their throats
// are shorter by more than their mouths (G. Fant, "A note on vocal tract size factors and non-uniform F-pattern
// scalings", STL-QPSR 4/1966).
namespace cast {
// clang-format off
inline const Speaker tom   {.name = "Tom, a man",           .low = 1.00, .middle = 1.06, .high = 1.03, .rd = 0.9, .jitter = 0.022, .shimmer = 0.09};
inline const Speaker boris {.name = "Boris, a big man",     .low = 0.92, .middle = 0.97, .high = 0.93, .rd = 0.8, .breath = 1.2, .jitter = 0.026, .shimmer = 0.10, .width = 1.1};
inline const Speaker pip   {.name = "Pip, a small man",     .low = 1.07, .middle = 1.13, .high = 1.10, .rd = 0.8, .breath = 0.9, .jitter = 0.020, .shimmer = 0.08};
inline const Speaker otto  {.name = "Otto, an old man",     .low = 0.97, .middle = 1.02, .high = 1.00, .rd = 1.2, .breath = 1.6, .jitter = 0.034, .shimmer = 0.13, .width = 1.2};
inline const Speaker mara  {.name = "Mara, a woman",        .low = 1.15, .middle = 1.17, .high = 1.16, .rd = 1.1, .breath = 1.1, .jitter = 0.016, .shimmer = 0.07, .width = 1.1};
inline const Speaker ida  {.name = "Ida, a low-voiced woman", .low = 1.10, .middle = 1.11, .high = 1.11, .rd = 1.0, .breath = 1.2, .jitter = 0.018, .shimmer = 0.08};
inline const Speaker hedda {.name = "Hedda, an old woman",  .low = 1.12, .middle = 1.12, .high = 1.13, .rd = 1.2, .breath = 1.5, .jitter = 0.030, .shimmer = 0.12, .width = 1.2};
inline const Speaker lili  {.name = "Lili, a girl",         .low = 1.32, .middle = 1.30, .high = 1.27, .rd = 0.9, .breath = 1.0, .jitter = 0.014, .shimmer = 0.06};
inline const Speaker ben   {.name = "Ben, a boy",           .low = 1.25, .middle = 1.26, .high = 1.22, .rd = 0.9, .breath = 1.1, .jitter = 0.018, .shimmer = 0.08};
// clang-format on
} // namespace cast

} // namespace quiverly::clips
