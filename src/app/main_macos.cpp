#include <QApplication>

#include "app/program.h"
#include "ui/BonkoApp.h"

using namespace quiverly;

// The program outlives its window, which comes back when the user turns to the program again. The system itself keeps a
// second copy from being started, and supplies the menu bar.
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
