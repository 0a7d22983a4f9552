#include "platform/linux/SensorPage.h"

#include <cstdint>
#include <system_error>
#include <utility>

#include <QString>

#include "platform/linux/sensors/SensorService.h"
#include "platform/linux/sensors/iio/Accelerometer.h"
#include "platform/linux/sensors/iio/Poller.h"
#include "platform/linux/sensors/laptop_source.h"

namespace quiverly {

namespace {

using Cause = SensorTrouble::Cause;
using Refusal = Accelerometer::Refusal;

constexpr std::string_view place = "<!-- this machine -->";

Cause causeOf(const std::error_code& error) {
    if (error == std::errc::permission_denied || error == std::errc::operation_not_permitted)
        return Cause::notPermitted;
    if (error == std::errc::device_or_resource_busy) return Cause::busy;
    return Cause::failed;
}

std::string reasonOf(const std::error_code& error) {
    switch (causeOf(error)) {
    case Cause::notPermitted:
        return "You may not read it.";
    case Cause::busy:
        return "Another program keeps it to itself. Close that program.";
    default:
        return "It did not answer: " + error.message() + ".";
    }
}

SensorTrouble troubleOf(std::string sensor, const tl::expected<FileDescriptor, std::error_code>& opened) {
    if (opened) return {.sensor = std::move(sensor), .reason = "It answers now: try again."};
    return {.cause = causeOf(opened.error()), .sensor = std::move(sensor), .reason = reasonOf(opened.error())};
}

SensorTrouble troubleOf(const Accelerometer& accelerometer) {
    const std::string name = accelerometer.inWords();
    const auto& refusal = accelerometer.refusal;
    if (!refusal || refusal->kind == Refusal::Kind::notPermitted) return troubleOf(name, Poller::open(accelerometer));
    return {.cause = refusal->kind == Refusal::Kind::tooSlow ? Cause::tooSlow : Cause::unsuitable,
            .sensor = name,
            .reason = "It " + refusal->because + "."};
}

// A laptop has other services of the same class.
bool isMotionSensor(const SensorService& service) {
    const auto has = [&](const char* key, std::int64_t value) {
        const auto found = service.properties.find(key);
        return found != service.properties.end() && found->second == SensorService::Properties::mapped_type(value);
    };
    return has("PrimaryUsagePage", 0xFF00) && has("PrimaryUsage", 3);
}

std::string headingOf(const std::vector<SensorTrouble>& troubles) {
    if (troubles.empty()) return "has no sensor that Linux can read";
    switch (troubles.front().cause) {
    case Cause::notPermitted:
        return "has a sensor that you may not read";
    case Cause::busy:
        return "has a sensor that is busy";
    case Cause::failed:
        return "has a sensor that does not answer";
    case Cause::tooSlow:
        return "has a sensor that is too slow";
    case Cause::unsuitable:
        return "has a sensor that is of no use for this";
    case Cause::none:
        break;
    }
    return "has a sensor that answers again";
}

std::string escaped(const std::string& text) {
    return QString::fromStdString(text).toHtmlEscaped().toStdString();
}

std::string sectionOf(const std::vector<SensorTrouble>& troubles) {
    std::string html = "<section>\n  <h2>This machine " + headingOf(troubles) + "</h2>\n";
    if (troubles.empty()) {
        html += "  <p>Linux has no driver for an accelerometer in it, or there is none inside.</p>\n";
    } else {
        html += "  <dl>\n";
        for (const auto& trouble : troubles) {
            html += "    <dt>" + escaped(trouble.sensor) + "</dt>\n    <dd>" + escaped(trouble.reason) + "</dd>\n";
        }
        html += "  </dl>\n";
    }
    return html + "</section>\n";
}

} // namespace

std::vector<SensorTrouble> findSensorTroubles(const std::filesystem::path& sys) {
    std::vector<SensorTrouble> troubles;
    for (const auto& service : findSimulatedLaptop("AppleSPUHIDDevice")) {
        if (isMotionSensor(service)) troubles.push_back(troubleOf(service.description, service.open()));
    }
    for (const auto& accelerometer : findAccelerometers(sys)) troubles.push_back(troubleOf(accelerometer));
    return troubles;
}

std::string sensorPage(std::string_view shipped, const std::vector<SensorTrouble>& troubles) {
    std::string page(shipped);
    if (const auto found = page.find(place); found != std::string::npos) {
        page.replace(found, place.size(), sectionOf(troubles));
    }
    return page;
}

} // namespace quiverly
