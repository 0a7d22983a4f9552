#pragma once

#include "ui/BonkoApp.h"

namespace quiverly {

// Reaches into the objects of the window, for tests only.
struct WindowInspector {
    static BonkoEngine& engine(BonkoApp& app) { return app.engine; }
    static QMainWindow& window(BonkoApp& app) { return app.window; }
};

} // namespace quiverly
