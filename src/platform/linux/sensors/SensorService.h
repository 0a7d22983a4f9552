#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <system_error>
#include <variant>

#include <tl/expected.hpp>

#include "sockets/FileDescriptor.h"

namespace quiverly {

// One service of the registry, as a source of sensors supplies it. Main thread.
struct SensorService {
    using Properties = std::map<std::string, std::variant<std::int64_t, std::string>>;
    using SetProperty = std::function<void(std::string_view key, std::int32_t value)>;
    using Open = std::function<tl::expected<FileDescriptor, std::error_code>()>;

    Properties properties;
    SetProperty setProperty;

    // Opens the sensor: a socket whose packets are its reports, as ReportReceiver takes them in. Closing the
    // socket closes the sensor; the other end closes when the sensor is gone. Errors are the system's own (errno).
    Open open;

    std::string description = {}; // for whoever records it

    // How many equal reports each packet stands for: a source that is slower than the reader expects hands on a reading
    // in one go.
    int reportsPerPacket = 1;
};

} // namespace quiverly
