#pragma once

namespace quiverly {

// Tells the toolkit, and through it the desktop, which program this is. After the QApplication is made.
void describeProgram();

} // namespace quiverly
