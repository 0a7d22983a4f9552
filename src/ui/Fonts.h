#pragma once

#include <QFont>

namespace quiverly {

// What a text is, which decides the size and weight of its font.
enum class FontRole { caption2, caption, strongCaption, subheadline, callout, body, headline, badge, title, welcome };

// The font of a role: the system's typeface, or the rounded one that the program carries for its two titles. A plain
// one that the program carries, too, stands in for what the others lack. Sizes are those drawn for a system font of up
// to 11 points; a larger system font enlarges all in proportion.
QFont fontFor(FontRole role);

// How much larger than drawn the user wants texts; at least 1.
double fontScale();

} // namespace quiverly
