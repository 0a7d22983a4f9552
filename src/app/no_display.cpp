#include "app/no_display.h"

#include <unistd.h>

#include <cstdio>
#include <cstring>

#include <QByteArray>
#include <QtMessageHandler>

namespace quiverly {

namespace {

QtMessageHandler usualHandler = nullptr;

[[noreturn]] void sayThereIsNone() {
    QByteArray display = qgetenv("WAYLAND_DISPLAY");
    if (display.isEmpty()) display = qgetenv("DISPLAY");
    const QByteArray line = display.isEmpty() ? "There is no display: neither WAYLAND_DISPLAY nor DISPLAY is set."
                                              : "The window cannot be opened on the display \"" + display + "\".";
    std::fprintf(stderr, "quiverly: %s\n", line.constData()); // is not buffered
    ::_exit(1);
}

// The toolkit says in several lines what it tried, and then that all of it failed.
void handleMessage(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    if (type == QtFatalMsg) sayThereIsNone();
    const bool isAboutDisplay = context.category && std::strncmp(context.category, "qt.qpa.", 7) == 0;
    if (!isAboutDisplay && usualHandler) usualHandler(type, context, text);
}

} // namespace

void endWithoutDisplay() {
    usualHandler = qInstallMessageHandler(handleMessage);
}

void displayIsThere() {
    qInstallMessageHandler(usualHandler);
}

} // namespace quiverly
