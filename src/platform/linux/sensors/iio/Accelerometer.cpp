#include "platform/linux/sensors/iio/Accelerometer.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <string_view>
#include <utility>

#include "platform/linux/sensors/iio/DistinctRate.h"
#include "platform/linux/sensors/iio/MeasuredRates.h"
#include "platform/linux/sensors/iio/attribute.h"
#include "platform/linux/sensors/iio/units.h"

namespace quiverly {

namespace {

using Refusal = Accelerometer::Refusal;

constexpr std::string_view axes = "xyz";
constexpr double leastThreshold = 0.04; // g; the softest slap that the window lets a user ask for
constexpr std::string_view hidDriver = "hid_sensor_accel_3d";

std::string textOf(const std::filesystem::path& file) {
    return attributeText(file).value_or("");
}

// Nothing when there is no such attribute, or none that is a number.
std::optional<double> numberOf(const std::filesystem::path& file) {
    const auto text = attributeText(file);
    return text ? attributeNumber(*text) : std::nullopt;
}

bool isThere(const std::filesystem::path& file) {
    struct stat status = {};
    return ::stat(file.c_str(), &status) == 0;
}

std::string axisFile(std::size_t axis, std::string_view what) {
    return std::string("in_accel_") + axes[axis] + "_" + std::string(what);
}

// Where the folder really is: below the device that the driver drives.
std::filesystem::path deviceOf(const std::filesystem::path& folder) {
    std::error_code unknown;
    return std::filesystem::canonical(folder, unknown).parent_path();
}

std::string driverOf(const std::filesystem::path& device) {
    std::error_code unknown;
    return std::filesystem::read_symlink(device / "driver", unknown).filename().string();
}

// Its sensor hub, on a bus of its own (0x20) with AMD's number, has the values written to memory by the firmware.
bool isOfAmdHub(const std::filesystem::path& device) {
    return std::ranges::any_of(device, [](const auto& part) { return part.string().starts_with("0020:1022:"); });
}

// Of the sensors in memory, what it is set to is no clue to how often the values change.
std::optional<double> statedRateOf(const std::filesystem::path& folder, std::string_view driver) {
    if (driver == hidDriver) return std::nullopt;
    for (const char* attribute : {"in_accel_sampling_frequency", "sampling_frequency"}) {
        const auto rate = numberOf(folder / attribute);
        if (rate && *rate > 0) return rate; // some drivers say 0 while nobody reads
    }
    return std::nullopt;
}

std::string fixed(double number, int digits) {
    std::array<char, 64> text; // NOLINT: filled by the next call
    const auto end = std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed, digits);
    return end.ec == std::errc() ? std::string(text.data(), end.ptr) : "?";
}

// Of one axis: one value for all of them, or one for each. Nothing when there is neither, or when it is malformed.
std::optional<double> valueOf(const std::filesystem::path& folder, std::size_t axis, const std::string& what) {
    const auto own = folder / axisFile(axis, what);
    return numberOf(isThere(own) ? own : folder / ("in_accel_" + what));
}

bool hasValue(const std::filesystem::path& folder, std::size_t axis, const std::string& what) {
    return isThere(folder / axisFile(axis, what)) || isThere(folder / ("in_accel_" + what));
}

std::optional<Refusal> readScales(Accelerometer& accelerometer) {
    for (std::size_t axis = 0; axis < axes.size(); ++axis) {
        if (!isThere(accelerometer.rawFile(axis))) {
            return Refusal{Refusal::Kind::incomplete, "does not measure all three directions"};
        }
        const auto scale = valueOf(accelerometer.folder, axis, "scale");
        if (!scale || *scale == 0) return Refusal{Refusal::Kind::incomplete, "does not tell its scale"};
        accelerometer.scale[axis] = *scale;
        if (!hasValue(accelerometer.folder, axis, "offset")) continue;
        const auto offset = valueOf(accelerometer.folder, axis, "offset");
        if (!offset) return Refusal{Refusal::Kind::incomplete, "does not tell its offset"};
        accelerometer.offset[axis] = *offset;
    }
    return std::nullopt;
}

std::optional<Refusal> findSlowness(const Accelerometer& accelerometer, const std::filesystem::path& device) {
    const auto slow = [](std::string because) { return Refusal{Refusal::Kind::tooSlow, std::move(because)}; };
    const std::string_view driver = accelerometer.driver;
    if (driver.starts_with("st-accel") || driver.starts_with("st_accel") || driver.starts_with("st_lsm6dsx")) {
        return slow("is powered up anew for each value, which takes too long: it gives 11 to 19 readings a second");
    }
    if (driver == hidDriver && isOfAmdHub(device)) return slow("gives new values only 5 times a second");
    if (accelerometer.statedRate && *accelerometer.statedRate < DistinctRate::leastUsable) {
        return slow("is set to " + fixed(*accelerometer.statedRate, 0) + " readings a second");
    }
    if (const auto measured = MeasuredRates::ofThisProgram()->of(accelerometer.identity);
        measured && *measured < DistinctRate::leastUsable) {
        return slow("gave only " + fixed(*measured, 0) + " different readings a second while it was moved");
    }
    return std::nullopt;
}

std::optional<Refusal> findCoarseness(const Accelerometer& accelerometer) {
    double step = 0.0; // g
    for (const double scale : accelerometer.scale) step = std::max(step, std::abs(scale) / standardGravity);
    if (step <= leastThreshold) return std::nullopt;
    return Refusal{Refusal::Kind::tooCoarse,
                   "measures in steps of " + fixed(step, 3) + " g, which is more than a soft slap"};
}

std::optional<Refusal> findPermission(const Accelerometer& accelerometer) {
    for (std::size_t axis = 0; axis < axes.size(); ++axis) {
        if (::access(accelerometer.rawFile(axis).c_str(), R_OK) != 0) {
            return Refusal{Refusal::Kind::notPermitted, "may not be read by this user"};
        }
    }
    return std::nullopt;
}

Accelerometer describe(const std::filesystem::path& folder) {
    const auto device = deviceOf(folder);
    Accelerometer found;
    found.folder = folder;
    struct stat status = {};
    if (::stat((folder / axisFile(0, "raw")).c_str(), &status) == 0) found.identity = {status.st_dev, status.st_ino};
    found.name = textOf(folder / "name");
    found.driver = driverOf(device);
    found.place = textOf(folder / "label");
    if (found.place.empty()) found.place = textOf(folder / "location"); // of older drivers
    found.statedRate = statedRateOf(folder, found.driver);
    found.refusal = readScales(found);
    if (!found.refusal) found.refusal = findSlowness(found, device);
    if (!found.refusal) found.refusal = findCoarseness(found);
    if (!found.refusal) found.refusal = findPermission(found);
    return found;
}

// 0 for iio:device0; those with other names come last.
unsigned long numberOfFolder(const std::filesystem::path& folder) {
    const std::string name = folder.filename().string();
    const std::size_t digits = name.find_last_not_of("0123456789") + 1;
    unsigned long number = 0;
    const auto read = std::from_chars(name.data() + digits, name.data() + name.size(), number);
    return read.ec == std::errc() ? number : std::string::npos;
}

// The lower, the earlier it is to be tried.
int rank(const Accelerometer& accelerometer) {
    int usefulness = 0;
    if (accelerometer.refusal) usefulness = accelerometer.refusal->kind == Refusal::Kind::notPermitted ? 1 : 2;
    int place = 1;
    if (accelerometer.place == "accel-base" || accelerometer.place == "base") place = 0;
    if (accelerometer.place == "accel-display" || accelerometer.place == "lid") place = 2;
    return 3 * usefulness + place;
}

} // namespace

std::filesystem::path Accelerometer::rawFile(std::size_t axis) const {
    return folder / axisFile(axis, "raw");
}

std::string Accelerometer::inWords() const {
    std::string text =
        (name.empty() ? folder.filename().string() : name) + ", driver " + (driver.empty() ? "?" : driver);
    text += ", " + fixed(std::abs(scale[0]) / standardGravity, 6) + " g a step";
    return statedRate ? text + ", set to " + fixed(*statedRate, 0) + " readings a second" : text;
}

std::vector<Accelerometer> findAccelerometers(const std::filesystem::path& sys) {
    std::vector<std::filesystem::path> folders;
    std::error_code unreadable;
    std::filesystem::directory_iterator entry(sys / "bus/iio/devices", unreadable);
    for (; !unreadable && entry != std::filesystem::directory_iterator(); entry.increment(unreadable)) {
        const auto measures = [&](std::size_t axis) { return isThere(entry->path() / axisFile(axis, "raw")); };
        if (measures(0) || measures(1) || measures(2)) folders.push_back(entry->path());
    }
    std::ranges::sort(folders, {}, numberOfFolder);
    std::vector<Accelerometer> found;
    std::ranges::transform(folders, std::back_inserter(found), describe);
    std::ranges::stable_sort(found, {}, rank);
    return found;
}

std::filesystem::path systemFolder() {
    const char* const folder = std::getenv("QUIVERLY_SYS"); // NOLINT(concurrency-mt-unsafe): main thread
    return folder != nullptr && *folder != '\0' ? folder : "/sys";
}

} // namespace quiverly
