#include "ui/program.h"

#include <QApplication>

#include "identity.h"

namespace quiverly {

void describeProgram() {
    QApplication::setApplicationName("quiverly");
    QApplication::setApplicationDisplayName("Quiverly");
    QApplication::setApplicationVersion(identity::version);
    QApplication::setDesktopFileName(identity::identifier);
}

} // namespace quiverly
