#include "sockets/interruptions.h"

#include <sys/signalfd.h>

namespace quiverly {

FileDescriptor interruptions() {
    sigset_t ending;
    sigemptyset(&ending);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&ending, signal);
    ::pthread_sigmask(SIG_BLOCK, &ending, nullptr);
    for (const int signal : ignoredSignals) std::signal(signal, SIG_IGN);
    return FileDescriptor(::signalfd(-1, &ending, SFD_CLOEXEC));
}

} // namespace quiverly
