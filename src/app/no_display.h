#pragma once

namespace quiverly {

// Between these two calls, around the construction of the QApplication, a display that cannot be opened ends the
// program with one line on standard error and status 1, where the toolkit would abort it. What the toolkit has to say
// meanwhile, it says once there is a display.
void endWithoutDisplay();
void displayIsThere();

} // namespace quiverly
