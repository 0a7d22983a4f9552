#pragma once

#include <QByteArray>

namespace quiverly {

class BonkoApp;

// The token by which the desktop lets a program that the user has just started bring a window to the front; empty when
// there is none. To be asked before the QApplication is made, which takes it.
QByteArray activationToken();

// Opens the window or brings it to the front, by the token that another program was given.
void bringToFront(BonkoApp& app, const QByteArray& token);

} // namespace quiverly
