#include "app/program.h"

#include <QApplication>

#include "identity.h"

namespace quiverly {

void describeProgram() {
    QApplication::setApplicationName("quiverly");
    QApplication::setApplicationDisplayName("Quiverly");
    QApplication::setApplicationVersion(identity::version);
    QApplication::setLayoutDirection(Qt::LeftToRight); // that of its texts, which are English everywhere
    QApplication::setDesktopFileName(identity::identifier);
}

} // namespace quiverly
