#pragma once

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <system_error>

#include <tl/expected.hpp>

#include "platform/linux/sensors/iio/AxisFiles.h"
#include "platform/linux/sensors/iio/DistinctRate.h"
#include "platform/linux/sensors/iio/MeasuredRates.h"
#include "sockets/FileDescriptor.h"

namespace quiverly {

// Reads an accelerometer 125 times a second on a thread of its own and sends each reading as one report.
//
// A driver may take seconds for a reading, when its sensor has gone mute, and then answer 0 as if all were well. So a
// reading that took more than 100 ms is dropped, and the thread is never waited for: it ends by itself, as soon as the
// driver lets it, when the other end of its socket has been closed or the sensor is gone. Should the same sensor be
// opened again before that, the thread goes on for the new listener, so that there is never more than one that is
// stuck. While nobody listens there is no thread.
//
// A reading that fails is tried again, 25 times a second if it keeps failing. Main thread, but for what is private.
class Poller {
public:
    // A socket whose packets are the reports, as ReportReceiver takes them in. Waits for the first reading to
    // succeed or to fail for good, but for less than 50 ms: a sensor that takes longer counts as opened. Errors are the
    // system's own (errno).
    static tl::expected<FileDescriptor, std::error_code> open(const Accelerometer& accelerometer);

    Poller(AxisFiles files, const Accelerometer::Identity& identity, FileDescriptor output);
    Poller(const Poller&) = delete;
    Poller& operator=(const Poller&) = delete;

private:
    using Clock = std::chrono::steady_clock;
    using Reading = tl::expected<Acceleration3, std::error_code>;

    static bool start(const std::shared_ptr<Poller>& poller);
    static void* runThread(void* poller);

    bool takeOver(FileDescriptor& socket);
    std::error_code awaitFirstReading();

    // The polling thread.
    void run();
    bool handle(const Reading& reading, Clock::time_point begin, Clock::time_point end);
    bool handleFailure(const std::error_code& error);
    void settle(const std::error_code& outcome);
    void measure(const Acceleration3& acceleration, Clock::time_point time);
    Clock::time_point nextTurn(Clock::time_point turn, Clock::time_point now) const;

    const AxisFiles files;
    const Accelerometer::Identity identity;
    const std::shared_ptr<MeasuredRates> rates = MeasuredRates::ofThisProgram();
    std::shared_ptr<Poller> itself; // until its thread takes it
    DistinctRate rate;              // of the polling thread
    int failures = 0;               // of the polling thread, in a row

    std::mutex mutex; // of all that follows
    std::condition_variable changed;
    FileDescriptor output;                       // none once the thread has ended
    std::optional<std::error_code> firstOutcome; // of a reading, since the last opening; no error for success
};

} // namespace quiverly
