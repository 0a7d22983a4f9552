#include <QApplication>

#include "identity.h"
#include "ui/BonkoApp.h"

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setApplicationName("quiverly");
    QApplication::setApplicationDisplayName("Quiverly");
    QApplication::setApplicationVersion(quiverly::identity::version);
    QApplication::setDesktopFileName(quiverly::identity::identifier);

    quiverly::BonkoApp app;
    app.show();
    return QApplication::exec();
}
