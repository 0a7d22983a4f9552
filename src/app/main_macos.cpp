#include <QApplication>

#include "app/program.h"
#include "ui/BonkoApp.h"

using namespace quiverly;

// The program outlives its window, which is shown again when the user activates the program. The system prevents a
// second copy from running, and supplies the menu bar.
int main(int argc, char** argv) {
    QApplication application(argc, argv);
    describeProgram();
    QApplication::setQuitOnLastWindowClosed(false);

    BonkoApp app;
    QObject::connect(&application, &QApplication::applicationStateChanged, [&app](Qt::ApplicationState state) {
        if (state == Qt::ApplicationActive) app.show();
    });
    app.show();
    return QApplication::exec();
}
