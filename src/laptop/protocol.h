#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <system_error>
#include <variant>
#include <vector>

#include <tl/expected.hpp>

// What a simulated laptop and the readers of its sensor say to each other, over a Unix-domain socket that keeps packets
// apart (SOCK_SEQPACKET). One packet is one message: a byte for its kind, then its content, integers little-endian, a
// text as a byte for its length and that many bytes.
//
// The laptop begins: one ServiceHello for each of its services, then EndOfServices. From then on a service is named by
// its index in that list. Each PropertyWrite and each OpenRequest is answered, in order. Reports follow on a connection
// that has opened the accelerometer. A client that breaks these rules is disconnected.
namespace quiverly::laptop {

using Value = std::variant<std::int64_t, std::string>;

struct ServiceHello {
    std::string className;
    std::map<std::string, Value> properties;
};

struct EndOfServices {};

struct PropertyWrite {
    std::uint8_t service = 0;
    std::string key;
    std::int32_t value = 0;
};

struct PropertyAnswer {
    std::int32_t error = 0; // 0 or an error number of the system (errno)
};

struct OpenRequest {
    std::uint8_t service = 0;
};

struct OpenAnswer {
    std::int32_t error = 0; // 0 or an error number of the system (errno)
};

struct Report {
    std::vector<std::uint8_t> bytes;
};

using Message =
    std::variant<ServiceHello, EndOfServices, PropertyWrite, PropertyAnswer, OpenRequest, OpenAnswer, Report>;

inline constexpr std::size_t maximumServices = 256;
inline constexpr std::size_t maximumMessage = 1024; // bytes; a longer packet is not a message
inline constexpr std::size_t maximumReport = 256;   // bytes
inline constexpr std::uint8_t reportMark = 7;       // the kind of a report, before the report as it is

std::vector<std::uint8_t> encode(const Message& message);

// The error bad_message unless the packet is exactly one message.
tl::expected<Message, std::error_code> decode(std::span<const std::uint8_t> packet);

} // namespace quiverly::laptop
