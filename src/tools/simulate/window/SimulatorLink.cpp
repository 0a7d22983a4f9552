#include "tools/simulate/window/SimulatorLink.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string_view>

#include <QSocketNotifier>

namespace quiverly {

namespace {
constexpr qsizetype longestLine = 8192; // bytes
}

SimulatorLink::SimulatorLink(int messages, int commands)
    : messages(messages), commands(commands), notifier(new QSocketNotifier(messages, QSocketNotifier::Read, this)) {
    for (const int descriptor : {messages, commands}) ::fcntl(descriptor, F_SETFL, O_NONBLOCK);
    connect(notifier, &QSocketNotifier::activated, this, &SimulatorLink::read);
}

void SimulatorLink::send(const QByteArray& command) {
    const QByteArray line = command + '\n';
    [[maybe_unused]] const ssize_t written = ::write(commands, line.data(), static_cast<std::size_t>(line.size()));
}

void SimulatorLink::read() {
    std::array<char, 65536> bytes; // NOLINT: filled by the next call
    const ssize_t length = ::read(messages, bytes.data(), bytes.size());
    if (length < 0 && (errno == EAGAIN || errno == EINTR)) return;
    if (length <= 0) {
        notifier->setEnabled(false);
        if (onEnd) onEnd();
        return;
    }
    unfinishedLine.append(bytes.data(), length);
    qsizetype begin = 0;
    for (qsizetype end = unfinishedLine.indexOf('\n'); end >= 0; end = unfinishedLine.indexOf('\n', begin)) {
        const std::string_view line(unfinishedLine.constData() + begin, static_cast<std::size_t>(end - begin));
        begin = end + 1;
        const auto message = window::parse(line);
        if (message && onMessage) onMessage(*message);
    }
    unfinishedLine.remove(0, begin);
    if (unfinishedLine.size() > longestLine) unfinishedLine.truncate(longestLine); // it is no message any more
}

} // namespace quiverly
