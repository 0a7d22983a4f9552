#include <cstdio>

#include <QApplication>

#include "app/DesktopSettings.h"
#include "app/SingleInstance.h"
#include "app/activation.h"
#include "app/no_display.h"
#include "app/out_of_memory.h"
#include "app/program.h"
#include "ui/BonkoApp.h"

using namespace quiverly;

// Closing the window ends the program. A second start brings the window of the first to the front.
int main(int argc, char** argv) {
    endWithoutMemory();
    const QByteArray ownToken = activationToken();
    endWithoutDisplay();
    QApplication application(argc, argv);
    displayIsThere();
    describeProgram();

    BonkoApp* running = nullptr;
    const auto onCall = [&running](const QByteArray& token) {
        if (running) bringToFront(*running, token);
    };
    const SingleInstance instance(onCall, ownToken);
    switch (instance.place()) {
    case SingleInstance::Place::first:
        break;
    case SingleInstance::Place::taken:
        return 0;
    case SingleInstance::Place::unanswered:
        std::fputs("quiverly: Quiverly is already running but does not respond.\n", stderr);
        return 1;
    }

    BonkoApp app;
    running = &app;
    for (const Qt::Key key : {Qt::Key_Q, Qt::Key_W}) app.closeOn(Qt::CTRL | key);
    const DesktopSettings settings([&app] { app.show(); });
    return QApplication::exec();
}
