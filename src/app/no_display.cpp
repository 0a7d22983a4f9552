#include "app/no_display.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <mutex>
#include <vector>

#include <QByteArray>
#include <QString>
#include <QtMessageHandler>

namespace quiverly {

namespace {

struct Message {
    QtMsgType type;
    QString text;
};

std::mutex holding; // what follows; the toolkit has threads
std::vector<Message> heldBack;
QtMessageHandler usualHandler = nullptr;

[[noreturn]] void sayThereIsNone() {
    QByteArray display = qgetenv("WAYLAND_DISPLAY");
    if (display.isEmpty()) display = qgetenv("DISPLAY");
    const QByteArray line = display.isEmpty() ? "There is no display: neither WAYLAND_DISPLAY nor DISPLAY is set."
                                              : "The window cannot be opened on the display \"" + display + "\".";
    std::fprintf(stderr, "%s: %s\n", program_invocation_short_name, line.constData()); // is not buffered
    ::_exit(1);
}

// The toolkit says in several lines what it tries, and then that all of it has failed.
void handleMessage(QtMsgType type, const QMessageLogContext&, const QString& text) {
    if (type == QtFatalMsg) sayThereIsNone();
    const std::lock_guard lock(holding);
    heldBack.push_back({type, text});
}

} // namespace

void endWithoutDisplay() {
    usualHandler = qInstallMessageHandler(handleMessage);
}

void displayIsThere() {
    qInstallMessageHandler(usualHandler);
    const std::lock_guard lock(holding);
    for (const Message& message : heldBack) qt_message_output(message.type, {}, message.text);
    heldBack.clear();
}

} // namespace quiverly
