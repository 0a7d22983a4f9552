#include "app/program.h"

#include <QApplication>

#include "identity.h"

namespace quiverly {

void describeProgram() {
    QApplication::setApplicationName("quiverly");
    QApplication::setApplicationDisplayName("Quiverly");
    QApplication::setApplicationVersion(identity::version);
    QApplication::setLayoutDirection(Qt::LeftToRight); // its texts are always English
    QApplication::setDesktopFileName(identity::identifier);
}

} // namespace quiverly
