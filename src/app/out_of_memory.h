#pragma once

namespace quiverly {

// From now on memory that runs out, on whichever thread, ends the program with a line on the standard error and status
// 1 where nothing else handles it.
void endWithoutMemory();

} // namespace quiverly
