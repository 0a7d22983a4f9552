#pragma once

#include <QMainWindow>

#include "engine/BonkoEngine.h"

namespace quiverly {

class View;

// The application: one window, and one engine for as long as it lives. The window shows the onboarding view until the
// user has completed it, and the main view from then on, at later launches too.
class BonkoApp {
public:
    BonkoApp();
    ~BonkoApp();

    void show();     // opens the window, or brings it to the front
    void minimize(); // the window, if it is open
    void close();    // the window

    void closeOn(const QKeySequence& keys); // has these keys close the window

private:
    void showContent();
    View* makeOnboardingView();
    View* makeContentView();
    void applyPalette();

    BonkoEngine engine;
    QMainWindow window;
};

} // namespace quiverly
