#pragma once

#include <QMenuBar>

namespace quiverly {

class BonkoApp;

// Gives the menu bar of a Mac what every application has there beside its own menu, which the toolkit supplies: Close
// and Minimize, each for the application's window. There is no command for a new window.
void fillMenuBar(QMenuBar& bar, BonkoApp& app);

} // namespace quiverly
