#include "platform/linux/sensors/iio/Poller.h"

#include <pthread.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <csignal>
#include <cstdint>
#include <ctime>
#include <map>
#include <memory>
#include <utility>

#include "laptop/transport.h"
#include "sockets/input.h"

namespace quiverly {

namespace {

using namespace std::chrono_literals;

constexpr auto interval = 8ms; // 125 readings a second
constexpr auto longestReading = 100ms;
constexpr auto pauseAfterFailure = 40ms; // once it has failed several times
constexpr int quickRetries = 5;          // at the usual interval, so that an opening learns of the failure
constexpr auto openingPatience = 45ms;
constexpr std::size_t threadStackSize = 524288; // bytes

// Of the sensors that were opened last; a thread may be stuck in any of them. Main thread.
std::map<Accelerometer::Identity, std::weak_ptr<Poller>> pollers;

std::error_code lastError() {
    return {errno, std::generic_category()};
}

void sleepUntil(std::chrono::steady_clock::time_point time) {
    const auto since = time.time_since_epoch();
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(since);
    const timespec end{.tv_sec = seconds.count(), .tv_nsec = std::chrono::nanoseconds(since - seconds).count()};
    while (::clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &end, nullptr) == EINTR) {
    }
}

bool isHungUp(const FileDescriptor& socket) {
    pollfd state{.fd = socket.get(), .events = 0, .revents = 0};
    return waitForInput({&state, 1}, 0ms);
}

// As the sensor of the original laptop sends it: x, y and z from byte 6 on, in 1/65536 g.
std::array<std::uint8_t, 18> reportOf(const Acceleration3& acceleration) {
    std::array<std::uint8_t, 18> report = {};
    auto byte = report.begin() + 6;
    for (const double axis : acceleration) {
        const auto raw = static_cast<std::uint32_t>(std::lround(axis * 65536.0));
        for (int shift = 0; shift < 32; shift += 8) *byte++ = static_cast<std::uint8_t>(raw >> shift);
    }
    return report;
}

} // namespace

tl::expected<FileDescriptor, std::error_code> Poller::open(const Accelerometer& accelerometer) {
    int ends[2];
    if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends) != 0) {
        return tl::unexpected(lastError());
    }
    FileDescriptor reports(ends[0]);
    FileDescriptor output(ends[1]);
    std::erase_if(pollers, [](const auto& known) { return known.second.expired(); });
    auto poller = pollers[accelerometer.identity].lock();
    if (!poller || !poller->takeOver(output)) {
        auto files = AxisFiles::open(accelerometer);
        if (!files) return tl::unexpected(files.error());
        poller = std::make_shared<Poller>(*std::move(files), accelerometer.identity, std::move(output));
        if (!start(poller)) return tl::unexpected(std::make_error_code(std::errc::resource_unavailable_try_again));
        pollers[accelerometer.identity] = poller;
    }
    if (const auto error = poller->awaitFirstReading()) return tl::unexpected(error);
    return reports;
}

Poller::Poller(AxisFiles files, const Accelerometer::Identity& identity, FileDescriptor output)
    : files(std::move(files)), identity(identity), output(std::move(output)) {}

// The thread takes no signals: they are for the main thread.
bool Poller::start(const std::shared_ptr<Poller>& poller) {
    pthread_attr_t attributes;
    if (::pthread_attr_init(&attributes) != 0) return false;
    sigset_t all;
    sigset_t former;
    ::sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &former);
    poller->itself = poller;
    pthread_t thread = {};
    const bool started = ::pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED) == 0 &&
                         ::pthread_attr_setstacksize(&attributes, threadStackSize) == 0 &&
                         ::pthread_create(&thread, &attributes, runThread, poller.get()) == 0;
    ::pthread_sigmask(SIG_SETMASK, &former, nullptr);
    ::pthread_attr_destroy(&attributes);
    if (!started) poller->itself.reset();
    return started;
}

void* Poller::runThread(void* poller) {
    const auto owned = std::exchange(static_cast<Poller*>(poller)->itself, nullptr);
    ::pthread_setname_np(::pthread_self(), "quiverly-iio");
    owned->run();
    return nullptr;
}

// Whether the thread goes on for that socket: not if it has ended or still has a listener.
bool Poller::takeOver(FileDescriptor& socket) {
    const std::lock_guard lock(mutex);
    if (!output || !isHungUp(output)) return false;
    output = std::move(socket);
    firstOutcome.reset();
    return true;
}

std::error_code Poller::awaitFirstReading() {
    std::unique_lock lock(mutex);
    changed.wait_for(lock, openingPatience, [this] { return firstOutcome.has_value(); });
    if (!firstOutcome) firstOutcome = std::error_code(); // from now on a failure is only tried again
    return *firstOutcome;
}

void Poller::run() {
    for (auto turn = Clock::now();;) {
        sleepUntil(turn);
        const auto begin = Clock::now();
        const auto reading = files.read();
        const auto end = Clock::now();
        const std::lock_guard lock(mutex);
        if (!handle(reading, begin, end)) {
            output.reset();
            return;
        }
        turn = nextTurn(turn, end);
    }
}

// Whether to go on.
bool Poller::handle(const Reading& reading, Clock::time_point begin, Clock::time_point end) {
    if (!reading) return handleFailure(reading.error());
    failures = 0;
    if (end - begin > longestReading) return !isHungUp(output);
    settle({});
    measure(*reading, end);
    const auto sent = laptop::sendReport(output.get(), reportOf(*reading));
    return sent || !laptop::endsConnection(sent.error());
}

bool Poller::handleFailure(const std::error_code& error) {
    const bool isGone = error == std::errc::no_such_device;
    ++failures;
    if (!firstOutcome && (isGone || failures >= quickRetries)) {
        settle(error);
        return false;
    }
    return !isGone && !isHungUp(output);
}

// The first outcome since the opening counts.
void Poller::settle(const std::error_code& outcome) {
    if (firstOutcome) return;
    firstOutcome = outcome;
    changed.notify_one();
}

void Poller::measure(const Acceleration3& acceleration, Clock::time_point time) {
    if (!rate.add(acceleration, std::chrono::duration<double>(time.time_since_epoch()).count())) return;
    if (const auto measured = rate.perSecond()) rates->remember(identity, *measured);
}

// Keeps the pace; turns that were missed are left out.
Poller::Clock::time_point Poller::nextTurn(Clock::time_point turn, Clock::time_point now) const {
    if (failures > quickRetries) return now + pauseAfterFailure;
    return std::max<Clock::time_point>(turn + interval, now);
}

} // namespace quiverly
