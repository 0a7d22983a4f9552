// Notes when a program makes the calls that part the stages of a slap. Preloaded with LD_PRELOAD, it writes them to the
// file in $QUIVERLY_BENCH_NOTES, which has to be there, as many as fit.

#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string_view>

namespace {

enum class Call : std::uint32_t { received = 1, waited, opened, woke };

// As the file holds it, one after the other from its beginning.
struct Note {
    std::uint64_t moment; // nanoseconds of the monotonic clock
    std::uint32_t thread;
    Call call;
};

class Notes {
public:
    Notes() {
        const char* path = std::getenv("QUIVERLY_BENCH_NOTES"); // NOLINT(concurrency-mt-unsafe): nothing changes it
        std::FILE* file = path != nullptr ? std::fopen(path, "r+e") : nullptr;
        if (file == nullptr) return;
        struct stat status = {};
        ::fstat(::fileno(file), &status);
        const auto size = static_cast<std::size_t>(status.st_size);
        void* memory = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, ::fileno(file), 0);
        std::fclose(file);
        if (memory == MAP_FAILED) return;
        notes = static_cast<Note*>(memory);
        room = size / sizeof(Note);
    }

    void add(Call call) {
        const std::size_t place = count.fetch_add(1, std::memory_order_relaxed);
        if (place >= room) return;
        timespec now = {};
        ::clock_gettime(CLOCK_MONOTONIC, &now);
        const std::uint64_t moment =
            static_cast<std::uint64_t>(now.tv_sec) * 1'000'000'000U + static_cast<std::uint64_t>(now.tv_nsec);
        notes[place] = {moment, static_cast<std::uint32_t>(::gettid()), call};
    }

private:
    Note* notes = nullptr;
    std::size_t room = 0;
    std::atomic<std::size_t> count = 0;
};

Notes& notes() {
    static Notes all;
    return all;
}

// The function of that name that would be called without this library.
template<class Function>
Function* next(const char* name) {
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

bool isClip(const char* path) {
    return std::string_view(path).ends_with(".mp3");
}

} // namespace

extern "C" {

int recvmmsg(int socket, mmsghdr* messages, unsigned count, int flags, timespec* patience) {
    static auto* const real = next<decltype(recvmmsg)>("recvmmsg");
    const int received = real(socket, messages, count, flags, patience);
    if (received > 0) notes().add(Call::received);
    return received;
}

int poll(pollfd* inputs, nfds_t count, int patience) {
    static auto* const real = next<decltype(poll)>("poll");
    const int ready = real(inputs, count, patience);
    if (ready > 0) notes().add(Call::waited);
    return ready;
}

int ppoll(pollfd* inputs, nfds_t count, const timespec* patience, const sigset_t* signals) {
    static auto* const real = next<decltype(ppoll)>("ppoll");
    const int ready = real(inputs, count, patience, signals);
    if (ready > 0) notes().add(Call::waited);
    return ready;
}

int open(const char* path, int flags, ...) {
    static auto* const real = next<int(const char*, int, ...)>("open");
    std::va_list rest;
    va_start(rest, flags);
    const int mode = (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE ? va_arg(rest, int) : 0;
    va_end(rest);
    if (isClip(path)) notes().add(Call::opened);
    return real(path, flags, mode);
}

int eventfd_write(int descriptor, eventfd_t value) {
    static auto* const real = next<decltype(eventfd_write)>("eventfd_write");
    notes().add(Call::woke);
    return real(descriptor, value);
}
}
