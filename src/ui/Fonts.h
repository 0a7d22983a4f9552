#pragma once

#include <QFont>

namespace quiverly {

// The purpose of a text, which decides its font.
enum class FontRole { caption2, caption, strongCaption, subheadline, callout, body, headline, badge, title, welcome };

// The font of a role: the system's typeface, or an embedded rounded one for the two titles. An embedded plain one
// stands in for glyphs that these lack. Sizes are as designed for a system font of up to 11 points; a larger one
// enlarges them all in proportion.
QFont fontFor(FontRole role);

// How much larger than designed texts are; at least 1.
double fontScale();

// A length of the design, in pixels, enlarged as texts are.
double scaled(double length);
int scaled(int length);

} // namespace quiverly
