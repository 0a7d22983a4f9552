#include "tools/record/SensorReport.h"

#include <sys/utsname.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <utility>

#include "identity.h"
#include "platform/linux/sensors/ReportReceiver.h"
#include "platform/linux/sensors/iio/DistinctRate.h"
#include "platform/linux/sensors/iio/Poller.h"
#include "tools/replay/JsonText.h"

namespace quiverly {

namespace {

using Clock = std::chrono::steady_clock;
using Report = std::array<std::uint8_t, 18>;

double axisOf(const Report& report, std::size_t offset) {
    std::uint32_t raw = 0;
    for (std::size_t byte = 0; byte < 4; ++byte) raw |= std::uint32_t{report[offset + byte]} << (8 * byte);
    return static_cast<std::int32_t>(raw) / 65536.0;
}

double secondsSince(Clock::time_point begin) {
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

void read(TriedSensor& tried, int socket, std::chrono::milliseconds time) {
    const auto begin = Clock::now();
    std::optional<Report> last;
    DistinctRate rate;
    ReportReceiver receiver(socket);
    for (auto rest = Clock::duration(time); rest > rest.zero(); rest = begin + time - Clock::now()) {
        const auto reports = receiver.receive(rest);
        if (!reports && reports.error() == std::errc::interrupted) continue;
        if (!reports) {
            tried.error = "it went away";
            break;
        }
        for (const auto bytes : *reports) {
            Report report = {};
            std::ranges::copy(bytes.first(std::min(bytes.size(), report.size())), report.begin());
            ++tried.readings;
            if (last != report) ++tried.different;
            last = report;
            rate.add({axisOf(report, 6), axisOf(report, 10), axisOf(report, 14)}, secondsSince(begin));
        }
    }
    tried.seconds = secondsSince(begin);
    tried.differentRate = rate.perSecond();
}

TriedSensor trySensor(const Accelerometer& sensor, std::chrono::milliseconds time) {
    TriedSensor tried{.sensor = sensor};
    const bool isComplete = !sensor.refusal || sensor.refusal->kind != Accelerometer::Refusal::Kind::incomplete;
    if (!isComplete) return tried;
    const auto reports = Poller::open(sensor);
    if (reports) {
        read(tried, reports->get(), time);
    } else {
        tried.error = reports.error() == std::errc::device_or_resource_busy
                          ? "another program has it to itself: " + reports.error().message()
                          : reports.error().message();
    }
    return tried;
}

std::string fixed(double number, int digits) {
    std::array<char, 64> text; // NOLINT: filled by the next call
    const auto end = std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed, digits);
    return {text.data(), end.ptr};
}

std::string measured(const TriedSensor& tried) {
    if (!tried.error.empty()) return tried.error;
    if (tried.seconds == 0) return "not read";
    std::string text = fixed(tried.readings / tried.seconds, 0) + " readings a second, ";
    if (tried.differentRate) return text + fixed(*tried.differentRate, 0) + " different ones a second while moved";
    return text + std::to_string(tried.different) + " different ones in all; move the laptop to learn more";
}

std::string orUnknown(const std::string& text) {
    return text.empty() ? "?" : text;
}

class JsonObject {
public:
    explicit JsonObject(std::string& text) : text(text) { text += '{'; }
    ~JsonObject() { text += '}'; }
    JsonObject(const JsonObject&) = delete;
    JsonObject& operator=(const JsonObject&) = delete;

    std::string& member(std::string_view key) {
        if (text.back() != '{') text += ',';
        json::appendString(text, key);
        return text += ':';
    }
    void string(std::string_view key, std::string_view value) { json::appendString(member(key), value); }
    template<class Number>
    void number(std::string_view key, Number value) {
        json::appendNumber(member(key), value);
    }
    void boolean(std::string_view key, bool value) { member(key) += value ? "true" : "false"; }
    void numbers(std::string_view key, const std::array<double, 3>& values) {
        char before = '[';
        for (member(key); const double value : values) {
            text += std::exchange(before, ',');
            json::appendNumber(text, value);
        }
        text += ']';
    }

private:
    std::string& text;
};

void append(std::string& text, const TriedSensor& tried) {
    JsonObject object(text);
    const auto& sensor = tried.sensor;
    object.string("device", sensor.folder.filename().string());
    object.string("name", sensor.name);
    object.string("driver", sensor.driver);
    object.string("place", sensor.place);
    object.numbers("scale", sensor.scale);
    object.numbers("offset", sensor.offset);
    if (sensor.statedRate) object.number("stated_rate", *sensor.statedRate);
    object.number("readings", tried.readings);
    object.number("different", tried.different);
    object.number("seconds", tried.seconds);
    if (tried.differentRate) object.number("different_rate_while_moved", *tried.differentRate);
    if (!tried.error.empty()) object.string("error", tried.error);
    object.boolean("offered", tried.isOffered());
    object.string("verdict", tried.verdict());
}

} // namespace

bool TriedSensor::isOffered() const {
    return !sensor.refusal && !(differentRate && *differentRate < DistinctRate::leastUsable);
}

std::string TriedSensor::verdict() const {
    if (sensor.refusal) return "not offered: it " + sensor.refusal->because;
    if (!isOffered()) return "not offered: it is too slow";
    if (!error.empty()) return "offered, but not to be read now";
    const auto rate = differentRate ? differentRate : sensor.statedRate;
    if (!rate) return "offered; how fast it is shows when it is moved";
    return *rate < DistinctRate::good ? "offered; hears hard slaps only" : "offered; good";
}

std::vector<TriedSensor> trySensors(const std::filesystem::path& sys, std::chrono::milliseconds each) {
    std::vector<TriedSensor> tried;
    for (const auto& sensor : findAccelerometers(sys)) tried.push_back(trySensor(sensor, each));
    return tried;
}

std::string asText(const std::vector<TriedSensor>& sensors, bool isSimulated) {
    std::string text = isSimulated ? "A simulated laptop is running, which goes before all others.\n" : "";
    if (sensors.empty()) text += "This machine has no accelerometer that Linux can read.\n";
    for (const auto& tried : sensors) {
        const auto& sensor = tried.sensor;
        text += orUnknown(sensor.name) + " (" + sensor.folder.filename().string() + ")\n";
        text += "  driver    " + orUnknown(sensor.driver) + "\n";
        if (!sensor.place.empty()) text += "  place     " + sensor.place + "\n";
        text += "  scale     " + fixed(sensor.scale[0] / standardGravity, 6) + " g a step\n";
        if (sensor.statedRate) text += "  set to    " + fixed(*sensor.statedRate, 1) + " readings a second\n";
        text += "  measured  " + measured(tried) + "\n";
        text += "  verdict   " + tried.verdict() + "\n";
    }
    return text;
}

std::string asJson(const std::vector<TriedSensor>& sensors, bool isSimulated) {
    std::string text;
    {
        JsonObject object(text);
        object.string("quiverly", identity::version);
        object.string("kernel", kernel());
        object.boolean("simulated_laptop", isSimulated);
        char before = '[';
        object.member("sensors") += sensors.empty() ? "[" : "";
        for (const auto& tried : sensors) {
            text += std::exchange(before, ',');
            append(text, tried);
        }
        text += ']';
    }
    return text + '\n';
}

std::string kernel() {
    utsname system = {};
    if (::uname(&system) != 0) return "?";
    return std::string(system.sysname) + ' ' + system.release;
}

} // namespace quiverly
