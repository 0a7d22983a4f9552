#include "sensing/AccelerometerReader.h"

#include <cmath>
#include <cstdlib>
#include <utility>

#include "identity.h"

namespace quiverly {

namespace {

// What each sensor driver is told so that it reports; the interval is in microseconds.
struct DriverProperty {
    const char* key;
    std::int32_t value;
};
constexpr DriverProperty driverProperties[] = {
    {"SensorPropertyReportingState", 1},
    {"SensorPropertyPowerState", 1},
    {"ReportInterval", 1000},
};

constexpr double runLoopSlice = 0.25;           // seconds; bounds the delay of a stop
constexpr std::size_t threadStackSize = 524288; // bytes

// Bytes: where the axes stand in a report, and the length of the shortest report that has all three.
constexpr std::ptrdiff_t xOffset = 6;
constexpr std::ptrdiff_t yOffset = 10;
constexpr std::ptrdiff_t zOffset = 14;
constexpr std::ptrdiff_t shortestLength = 18;

// A sample is plausible if its magnitude, in g, is strictly between these.
constexpr double leastMagnitude = 0.2;
constexpr double greatestMagnitude = 25.0;

} // namespace

AccelerometerReader::AccelerometerReader() = default;

AccelerometerReader::~AccelerometerReader() {
    if (threadShouldRun) threadShouldRun->store(false, std::memory_order_relaxed);
    hidThread.reset();
    endingThread.reset();
}

bool AccelerometerReader::start() {
    if (isListening) return true;
    endingThread.reset();
    openError.reset();
    wakeSensorDrivers();

    auto matching = hid::matchingClass("AppleSPUHIDDevice");
    if (!matching) return fail("Could not query AppleSPUHIDDevice.");
    const auto services = hid::findServices(std::move(matching));
    if (!services) return fail("No Apple Silicon accelerometer found.");
    const auto service = findAccelerometer(*services);
    if (!service) return fail("Accelerometer device missing on this Mac.");

    const std::shared_ptr<hid::Device> device = hid::createDevice(*service);
    if (!device) return fail("Failed to create HID device.");
    const hid::ReturnCode opened = hid::open(*device);
    if (opened != hid::success) {
        return fail("Need Input Monitoring permission (System Settings → Privacy & Security). Code " +
                    std::to_string(opened) + ".");
    }
    return listen(device);
}

void AccelerometerReader::stop() {
    if (!isListening) return;
    isListening = false;
    threadShouldRun->store(false, std::memory_order_relaxed);
    endingThread = std::move(hidThread);
    hidDevice.reset();
}

bool AccelerometerReader::isRunning() const {
    return isListening;
}

const std::optional<std::string>& AccelerometerReader::lastOpenError() const {
    return openError;
}

void AccelerometerReader::wakeSensorDrivers() {
    auto matching = hid::matchingClass("AppleSPUHIDDriver");
    if (!matching) return;
    const auto drivers = hid::findServices(std::move(matching));
    if (!drivers) return;
    while (const auto driver = hid::nextService(*drivers)) {
        for (const auto& [key, value] : driverProperties) hid::setProperty(*driver, key, value);
    }
}

hid::Handle<hid::Service> AccelerometerReader::findAccelerometer(hid::Services& services) {
    while (auto service = hid::nextService(services)) {
        if (isAccelerometer(*service)) return service;
    }
    return nullptr;
}

bool AccelerometerReader::isAccelerometer(const hid::Service& service) {
    const auto properties = hid::readProperties(service);
    return properties && hid::integerProperty(*properties, "PrimaryUsagePage") == targetUsagePage &&
           hid::integerProperty(*properties, "PrimaryUsage") == targetUsage;
}

// Takes over an open device. The second waking is deliberate: a driver may have gone back to sleep before the open.
bool AccelerometerReader::listen(const std::shared_ptr<hid::Device>& device) {
    hidDevice = device;
    wakeSensorDrivers();
    if (!reportBuffer) reportBuffer = std::make_unique<std::uint8_t[]>(reportBufferSize);
    hid::registerInputReportCallback(*device, reportBuffer.get(), reportBufferSize, inputReportCallback, this);

    const auto shouldRun = std::make_shared<RunFlag>(true);
    const std::string name = std::string(identity::identifier) + ".accel";
    hidThread = startThread(name.c_str(), threadStackSize,
                            {.begin = [device] { hid::schedule(*device); },
                             .turn =
                                 [shouldRun] {
                                     if (!shouldRun->load(std::memory_order_relaxed)) return false;
                                     hid::runLoop(runLoopSlice);
                                     return true;
                                 },
                             .end =
                                 [device] {
                                     hid::unschedule(*device);
                                     hid::close(*device);
                                 }});
    if (!hidThread) {
        hid::close(*device);
        hidDevice.reset();
        return false;
    }
    threadShouldRun = shouldRun;
    isListening = true;
    return true;
}

bool AccelerometerReader::fail(std::string reason) {
    openError = std::move(reason);
    return false;
}

void AccelerometerReader::inputReportCallback(void* context, hid::ReturnCode, void*, std::uint32_t, std::uint32_t,
                                              std::uint8_t* report, std::ptrdiff_t reportLength) {
    if (context == nullptr) return;
    static_cast<AccelerometerReader*>(context)->handleReport(report, reportLength);
}

void AccelerometerReader::handleReport(const std::uint8_t* report, std::ptrdiff_t length) {
    ++decimationCounter;
    if (decimationCounter % decimationFactor == 0) decode(report, length);
}

// Apart, so that the reports that are not decoded cost next to nothing.
void AccelerometerReader::decode(const std::uint8_t* report, std::ptrdiff_t length) {
    if (length < shortestLength) return;
    const std::span bytes(report, static_cast<std::size_t>(length));
    const double x = readInt32LE(bytes, xOffset) / accelScale;
    const double y = readInt32LE(bytes, yOffset) / accelScale;
    const double z = readInt32LE(bytes, zOffset) / accelScale;
    const double magnitude = std::sqrt((x * x + y * y) + z * z);
    if (leastMagnitude < magnitude && magnitude < greatestMagnitude) onSample(x, y, z);
}

std::int32_t AccelerometerReader::readInt32LE(std::span<const std::uint8_t> bytes, std::ptrdiff_t offset) {
    if (offset < 0) std::abort(); // every caller passes one of the constants above
    const auto first = static_cast<std::size_t>(offset);
    if (first + 3 >= bytes.size()) return 0;
    const auto byte = [&](std::size_t index) { return std::uint32_t{bytes[first + index]}; };
    return static_cast<std::int32_t>(byte(0) | byte(1) << 8 | byte(2) << 16 | byte(3) << 24);
}

} // namespace quiverly
