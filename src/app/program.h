#pragma once

namespace quiverly {

// Tells the toolkit, and through it the desktop, which program this is and how it reads. After the QApplication is
// made.
void describeProgram();

} // namespace quiverly
