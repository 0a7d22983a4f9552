#include "app/menu_bar.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "platform/virtual/VirtualPlatform.h"
#include "support/Screen.h"
#include "ui/BonkoApp.h"

namespace quiverly {
namespace {

class MenuBarTest : public testing::Test {
protected:
    MenuBarTest() { fillMenuBar(bar, app); }

    QAction& command(const char* name) {
        for (const QAction* menu : bar.actions()) {
            for (QAction* action : menu->menu()->actions()) {
                if (action->text() == name) return *action;
            }
        }
        throw std::out_of_range(name);
    }

    VirtualPlatform platform;
    BonkoApp app;
    QMenuBar bar;
};

TEST_F(MenuBarTest, HasWhatEveryApplicationHasAndNothingElse) {
    std::vector<std::string> commands;
    for (const QAction* menu : bar.actions()) {
        for (const QAction* action : menu->menu()->actions()) {
            commands.push_back(
                (menu->text() + ": " + action->text() + ", " + action->shortcut().toString()).toStdString());
        }
    }
    EXPECT_EQ(commands, (std::vector<std::string>{"File: Close, Ctrl+W", "Window: Minimize, Ctrl+M"}));
}

TEST_F(MenuBarTest, CloseClosesTheWindow) {
    app.show();
    command("Close").trigger();
    EXPECT_FALSE(applicationWindow().isVisible());
}

TEST_F(MenuBarTest, MinimizeMinimizesTheWindowAndDoesNotOpenAClosedOne) {
    app.show();
    command("Minimize").trigger();
    EXPECT_TRUE(applicationWindow().isMinimized());
    app.show();
    EXPECT_FALSE(applicationWindow().isMinimized());
    app.close();
    command("Minimize").trigger();
    EXPECT_FALSE(applicationWindow().isVisible());
}

} // namespace
} // namespace quiverly
