#pragma once

#include <QMainWindow>

#include "engine/BonkoEngine.h"

namespace quiverly {

class View;

// The application: one window, one engine for as long as it lives. The window shows the onboarding view until the user
// has been through it, and the main view from then on, at later launches too.
class BonkoApp {
public:
    BonkoApp();
    ~BonkoApp();

    void show(); // opens the window, or brings it to the front

private:
    friend struct WindowInspector;

    void showContent();
    View* onboarding();
    View* content();
    void dress();

    BonkoEngine engine;
    QMainWindow window;
};

} // namespace quiverly
