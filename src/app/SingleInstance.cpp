#include "app/SingleInstance.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <memory>
#include <string>
#include <utility>

#include <QSocketNotifier>
#include <QTimer>

#include "sockets/input.h"
#include "sockets/user_socket.h"

namespace quiverly {

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds patience{5};    // with the first copy
constexpr std::chrono::milliseconds pause{10}; // while the first copy begins or ends, or cannot take a call
constexpr std::size_t longestToken = 1024;
constexpr char shown[] = "shown";

fs::path socketIn(const fs::path& folder) {
    return folder / "quiverly.socket";
}

std::optional<fs::path> privateFolder(const fs::path& shared) {
    if (auto runtime = runtimeFolder()) {
        if (isPrivate(*runtime) && socketIn(*runtime).native().size() <= SocketAddress::longest) return runtime;
    }
    fs::path own = shared / ("quiverly-" + std::to_string(::geteuid()));
    ::mkdir(own.c_str(), 0700);
    return isPrivate(own) ? std::optional(std::move(own)) : std::nullopt;
}

// Whether the copy that listens there has shown its window; false when none listens, or it ends before it answers.
bool call(const fs::path& socket, const QByteArray& token, Clock::time_point end) {
    const FileDescriptor connection = packetSocket();
    const auto address = SocketAddress::ofFile(socket);
    if (::connect(connection.get(), address.get(), address.length()) != 0) return false;
    const QByteArray message = "show " + token;
    ::send(connection.get(), message.data(), static_cast<std::size_t>(message.size()), MSG_NOSIGNAL);
    pollfd input = inputOf(connection.get());
    waitForInput({&input, 1}, end - Clock::now());
    char byte = 0;
    return ::recv(connection.get(), &byte, 1, 0) > 0;
}

} // namespace

SingleInstance::SingleInstance(OnCall onCall, const QByteArray& token, const fs::path& shared)
    : folder(privateFolder(shared)), onCall(std::move(onCall)), token(token.left(longestToken)), found(find()) {}

SingleInstance::~SingleInstance() {
    if (listener) ::unlink(socketIn(*folder).c_str());
}

SingleInstance::Place SingleInstance::find() {
    const auto end = Clock::now() + patience;
    while (Clock::now() < end) {
        if (hold()) return Place::first;
        if (call(socketIn(*folder), token, end)) return Place::taken;
        waitForInput({}, pause);
    }
    return Place::unanswered;
}

// False when another copy has the lock. A copy that cannot create the lock runs nevertheless.
bool SingleInstance::hold() {
    if (!folder) return true;
    const fs::path file = *folder / "quiverly.lock";
    lock = FileDescriptor(::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (!lock) return true;
    if (::flock(lock.get(), LOCK_EX | LOCK_NB) != 0) return errno != EWOULDBLOCK;
    listen();
    return true;
}

void SingleInstance::listen() {
    const fs::path socket = socketIn(*folder);
    const auto address = SocketAddress::ofFile(socket);
    ::unlink(socket.c_str()); // a copy that was killed left it
    FileDescriptor fresh = packetSocket();
    if (::bind(fresh.get(), address.get(), address.length()) != 0 || ::listen(fresh.get(), 16) != 0) return;
    listener = std::move(fresh);
    auto* notifier = new QSocketNotifier(listener.get(), QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this, notifier] {
        if (accept()) return;
        notifier->setEnabled(false);
        QTimer::singleShot(pause, notifier, [notifier] { notifier->setEnabled(true); });
    });
}

// False when the call still waits, which would be announced again at once.
bool SingleInstance::accept() {
    auto caller =
        std::make_shared<FileDescriptor>(::accept4(listener.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
    if (!*caller) return false;
    auto* notifier = new QSocketNotifier(caller->get(), QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this, caller, notifier] {
        std::array<char, sizeof "show" + longestToken> message; // NOLINT: filled by the next call
        const ssize_t length = ::recv(caller->get(), message.data(), message.size(), 0);
        if (length > 0) {
            onCall(QByteArray(message.data(), length).mid(sizeof "show"));
            ::send(caller->get(), shown, sizeof shown, MSG_NOSIGNAL);
        }
        notifier->deleteLater();
    });
    return true;
}

} // namespace quiverly
