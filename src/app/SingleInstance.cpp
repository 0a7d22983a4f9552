#include "app/SingleInstance.h"

#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <utility>

#include <QCryptographicHash>
#include <QSocketNotifier>

#include "sockets/input.h"
#include "sockets/user_socket.h"

namespace quiverly {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds patience{5};   // with the first copy
constexpr std::chrono::milliseconds pause{1}; // for a place that is taken and where nobody listens yet
constexpr char shown[] = "shown";

std::string placeName() {
    const std::string key = std::to_string(::geteuid()) + ':' + runtimeFolder().value_or("").string();
    const QByteArray hash = QCryptographicHash::hash(QByteArray::fromStdString(key), QCryptographicHash::Sha256);
    return "quiverly-" + hash.toHex().toStdString();
}

// What the holder of the place makes of a call.
enum class Answer { shown, gone, foreign, none };

Answer call(const std::string& name) {
    const FileDescriptor socket = packetSocket();
    const auto address = SocketAddress::ofName(name);
    if (::connect(socket.get(), address.get(), address.length()) != 0) {
        if (errno != ECONNREFUSED) return Answer::none;
        waitForInput({}, pause);
        return Answer::gone;
    }
    if (!peerIs(socket.get(), ::geteuid())) return Answer::foreign;
    pollfd input = inputOf(socket.get());
    if (!waitForInput({&input, 1}, patience)) return Answer::none;
    char byte = 0;
    return ::recv(socket.get(), &byte, 1, 0) > 0 ? Answer::shown : Answer::gone;
}

} // namespace

SingleInstance::SingleInstance(std::function<void()> onCall)
    : name(placeName()), onCall(std::move(onCall)), found(find()) {}

SingleInstance::Place SingleInstance::find() {
    const auto end = Clock::now() + patience;
    while (Clock::now() < end) {
        if (hold()) return Place::first;
        switch (call(name)) {
        case Answer::shown:
            return Place::taken;
        case Answer::none:
            return Place::unanswered;
        case Answer::foreign:
            return Place::first;
        case Answer::gone:
            break;
        }
    }
    return Place::unanswered;
}

// False when the place is taken. A copy that has not got what it takes to hold a place runs all the same.
bool SingleInstance::hold() {
    FileDescriptor socket = packetSocket();
    const auto address = SocketAddress::ofName(name);
    if (!socket || ::bind(socket.get(), address.get(), address.length()) != 0 || ::listen(socket.get(), 16) != 0) {
        return errno != EADDRINUSE;
    }
    listener = std::move(socket);
    auto* notifier = new QSocketNotifier(listener.get(), QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, &SingleInstance::answer);
    return true;
}

void SingleInstance::answer() {
    const FileDescriptor caller(::accept4(listener.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
    if (!caller || !peerIs(caller.get(), ::geteuid())) return;
    onCall();
    ::send(caller.get(), shown, sizeof shown, MSG_NOSIGNAL);
}

} // namespace quiverly
