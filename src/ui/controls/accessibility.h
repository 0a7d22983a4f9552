#pragma once

namespace quiverly {

// Teaches screen readers what the painted controls are where their base classes do not say so: a slider over
// hundredths, a group of choices, pictures. Called by those controls.
void describeControlsToScreenReaders();

} // namespace quiverly
