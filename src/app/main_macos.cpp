#include <optional>

#include <QApplication>
#include <QTimer>

#include "app/Reopening.h"
#include "app/menu_bar.h"
#include "app/program.h"
#include "ui/BonkoApp.h"

using namespace quiverly;

// The program outlives its window and goes on listening, as a user of a Mac expects of what ⌘Q ends; a click in the
// Dock shows the window again. The system prevents a second copy from running.
int main(int argc, char** argv) {
    QApplication application(argc, argv);
    describeProgram();
    QApplication::setQuitOnLastWindowClosed(false);

    BonkoApp app;
    QMenuBar menuBar; // without a parent it is there without a window too
    fillMenuBar(menuBar, app);
    std::optional<Reopening> reopening;
    QTimer::singleShot(0, [&] { reopening.emplace([&app] { app.show(); }); }); // when the event loop runs
    app.show();
    return QApplication::exec();
}
