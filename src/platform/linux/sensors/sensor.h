#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

// What a kind of sensor supplies to the registry. Lookups, properties and opening happen on the main thread; reading
// and closing on the sensor thread.
namespace quiverly::sensors {

using Properties = std::map<std::string, std::variant<std::int64_t, std::string>>;

// What one reading brought: a report of that length, nothing yet, or the knowledge that nothing will ever come.
struct Reading {
    enum class Kind { report, nothing, ended };
    Kind kind = Kind::nothing;
    std::size_t length = 0; // bytes
};

class Device {
public:
    virtual ~Device() = default;
    virtual int open() = 0; // 0 or an error number of the system (errno)
    virtual void close() = 0;
    virtual int descriptor() const = 0;                       // readable when there is something to read(); while open
    virtual Reading read(std::span<std::uint8_t> buffer) = 0; // never waits; longer reports are cut to the buffer
};

class Service {
public:
    virtual ~Service() = default;
    virtual std::optional<Properties> properties() const = 0; // nothing when they cannot be read
    virtual void setProperty(std::string_view key, std::int32_t value) = 0;
    virtual std::unique_ptr<Device> createDevice() const = 0; // null when no device can be made of it
};

// The services of that class, in the source's own order.
using FindServices = std::vector<std::unique_ptr<Service>> (*)(std::string_view className);

} // namespace quiverly::sensors
