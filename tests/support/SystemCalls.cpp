#include "support/SystemCalls.h"

#include <dlfcn.h>
#include <poll.h>
#include <sys/socket.h>

#include <cerrno>
#include <ctime>

namespace quiverly {

thread_local constinit Fault accepting;
thread_local constinit Fault receiving;
thread_local constinit Fault sending;
thread_local constinit Fault polling;
thread_local constinit int rests = 0;

bool Fault::strikes() {
    ++calls;
    if (left == 0) return false;
    if (left != always) --left;
    errno = error;
    return true;
}

namespace {

template<class Call>
Call* following(Call*, const char* name) {
    return reinterpret_cast<Call*>(::dlsym(RTLD_NEXT, name)); // NOLINT: what dlsym() is for
}

void countRest(const timespec& time) {
    if (time.tv_sec > 0 || time.tv_nsec >= 1'000'000) ++rests;
}

} // namespace
} // namespace quiverly

extern "C" {

int accept4(int socket, sockaddr* address, socklen_t* length, int flags) {
    static auto* const call = quiverly::following(&::accept4, "accept4");
    return quiverly::accepting.strikes() ? -1 : call(socket, address, length, flags);
}

ssize_t recv(int socket, void* bytes, size_t size, int flags) {
    static auto* const call = quiverly::following(&::recv, "recv");
    return quiverly::receiving.strikes() ? -1 : call(socket, bytes, size, flags);
}

int recvmmsg(int socket, mmsghdr* messages, unsigned count, int flags, timespec* limit) {
    static auto* const call = quiverly::following(&::recvmmsg, "recvmmsg");
    return quiverly::receiving.strikes() ? -1 : call(socket, messages, count, flags, limit);
}

ssize_t send(int socket, const void* bytes, size_t length, int flags) {
    static auto* const call = quiverly::following(&::send, "send");
    return quiverly::sending.strikes() ? -1 : call(socket, bytes, length, flags);
}

int ppoll(pollfd* inputs, nfds_t count, const timespec* limit, const sigset_t* mask) {
    static auto* const call = quiverly::following(&::ppoll, "ppoll");
    if (quiverly::polling.strikes()) return -1;
    if (count == 0 && limit != nullptr) quiverly::countRest(*limit);
    return call(inputs, count, limit, mask);
}

int nanosleep(const timespec* time, timespec* rest) {
    static auto* const call = quiverly::following(&::nanosleep, "nanosleep");
    quiverly::countRest(*time);
    return call(time, rest);
}
}
