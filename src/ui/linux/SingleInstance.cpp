#include "ui/linux/SingleInstance.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <utility>

#include <QCryptographicHash>
#include <QSocketNotifier>

#include "platform/linux/laptop/laptop_socket.h"

namespace quiverly {

namespace {

constexpr int patience = 5000; // milliseconds to wait for the first copy
constexpr int attempts = 100;  // while the first copy is on its way out
constexpr int pause = 10'000;  // microseconds between two of them
constexpr char shown[] = "shown";

// In the abstract namespace, where names do not outlive the sockets bound to them.
std::string placeName() {
    const std::string key = std::to_string(::geteuid()) + ':' + laptop::socketPlace().folder.string();
    const QByteArray hash = QCryptographicHash::hash(QByteArray::fromStdString(key), QCryptographicHash::Sha256);
    return "quiverly-" + hash.toHex().toStdString();
}

class Address {
public:
    explicit Address(const std::string& name)
        : size(static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size())) {
        address.sun_family = AF_UNIX;
        std::ranges::copy(name, address.sun_path + 1); // behind the zero that marks an abstract name
    }

    const sockaddr* get() const { return reinterpret_cast<const sockaddr*>(&address); }
    socklen_t length() const { return size; }

private:
    sockaddr_un address{};
    socklen_t size;
};

FileDescriptor newSocket() {
    return FileDescriptor(::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
}

// What the holder of the place makes of a call.
enum class Answer { shown, gone, foreign, none };

Answer call(const std::string& name) {
    const FileDescriptor socket = newSocket();
    const Address address(name);
    if (::connect(socket.get(), address.get(), address.length()) != 0) {
        return errno == EAGAIN ? Answer::none : Answer::gone;
    }
    if (!laptop::peerIs(socket.get(), ::geteuid())) return Answer::foreign;
    pollfd ready{socket.get(), POLLIN, 0};
    if (::poll(&ready, 1, patience) <= 0) return Answer::none;
    char byte = 0;
    return ::recv(socket.get(), &byte, 1, 0) > 0 ? Answer::shown : Answer::gone;
}

} // namespace

SingleInstance::SingleInstance(std::function<void()> onCall)
    : name(placeName()), onCall(std::move(onCall)), found(find()) {}

SingleInstance::Place SingleInstance::find() {
    for (int attempt = 0; attempt < attempts; ++attempt) {
        if (hold()) return Place::first;
        switch (call(name)) {
        case Answer::shown:
            return Place::taken;
        case Answer::none:
            return Place::unanswered;
        case Answer::foreign:
            return Place::first;
        case Answer::gone:
            ::usleep(pause);
        }
    }
    return Place::unanswered;
}

bool SingleInstance::hold() {
    FileDescriptor socket = newSocket();
    const Address address(name);
    if (::bind(socket.get(), address.get(), address.length()) != 0 || ::listen(socket.get(), 16) != 0) return false;
    listener = std::move(socket);
    auto* notifier = new QSocketNotifier(listener.get(), QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, &SingleInstance::answer);
    return true;
}

void SingleInstance::answer() {
    const FileDescriptor caller(::accept4(listener.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
    if (!caller || !laptop::peerIs(caller.get(), ::geteuid())) return;
    onCall();
    ::send(caller.get(), shown, sizeof shown, MSG_NOSIGNAL);
}

} // namespace quiverly
