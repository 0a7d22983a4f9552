#pragma once

namespace quiverly {

// Tells the toolkit, and through it the desktop, which program this is. Call it once the QApplication exists.
void describeProgram();

} // namespace quiverly
