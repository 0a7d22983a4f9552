#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "platform/hid.h"
#include "platform/thread.h"
#include "sensing/SampleCallback.h"

namespace quiverly {

// The only contact with the motion sensor: opens it, runs the thread on which its reports arrive, and turns them into
// samples.
//
// One report in eight is decoded; a sample whose magnitude is not strictly between 0.2 and 25 g is dropped. start(),
// stop() and destruction belong to the main thread; onSample is called on the sensor thread and may be replaced at any
// time. stop() never waits; the sensor thread closes the device itself within one slice of its run loop, and start()
// and destruction wait for that.
class AccelerometerReader {
public:
    SampleCallback onSample;

    AccelerometerReader();
    ~AccelerometerReader();
    AccelerometerReader(const AccelerometerReader&) = delete;
    AccelerometerReader& operator=(const AccelerometerReader&) = delete;

    // Whether the reader is listening afterwards. If not, lastOpenError() says why; it says nothing when the system had
    // no thread to spare.
    bool start();
    void stop();

    bool isRunning() const;
    const std::optional<std::string>& lastOpenError() const; // why the last start() failed; shown to the user

private:
    using RunFlag = std::atomic<bool>;

    static constexpr std::int64_t decimationFactor = 8;
    static constexpr double accelScale = 65536.0; // raw counts per g
    static constexpr std::int64_t reportBufferSize = 256;
    static constexpr std::int64_t targetUsagePage = 0xFF00;
    static constexpr std::int64_t targetUsage = 3;

    static void inputReportCallback(void* context, hid::ReturnCode result, void* sender, std::uint32_t reportType,
                                    std::uint32_t reportID, std::uint8_t* report, std::ptrdiff_t reportLength);
    void handleReport(const std::uint8_t* report, std::ptrdiff_t length);
    void decode(const std::uint8_t* report, std::ptrdiff_t length);
    static std::int32_t readInt32LE(std::span<const std::uint8_t> bytes, std::ptrdiff_t offset);

    static void wakeSensorDrivers();
    static hid::Handle<hid::Service> findAccelerometer(hid::Services& services);
    static bool isAccelerometer(const hid::Service& service);
    bool listen(const std::shared_ptr<hid::Device>& device);
    bool fail(std::string reason);

    std::shared_ptr<hid::Device> hidDevice;       // shared with the sensor thread, which closes it
    std::unique_ptr<std::uint8_t[]> reportBuffer; // filled and read on the sensor thread only
    bool isListening = false;
    std::int64_t decimationCounter = 0; // reports received since construction
    ThreadHandle hidThread;
    ThreadHandle endingThread;                // of the previous listening period, until the next start()
    std::shared_ptr<RunFlag> threadShouldRun; // one for each listening period
    std::optional<std::string> openError;
};

} // namespace quiverly
