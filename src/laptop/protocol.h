#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

// What the simulated laptop and those who read its sensor say to each other, over a Unix-domain socket that keeps
// packets apart (SOCK_SEQPACKET). One packet is one message: a byte that tells its kind, then its content, integers
// little-endian, texts as a byte that counts and that many bytes.
//
// The laptop begins: one ServiceHello for each service of its registry, then EndOfServices. A service is called by its
// place in that list from then on. Each PropertyWrite and each OpenRequest is answered, in order. Reports follow on a
// connection that has opened the accelerometer. Whoever breaks these rules is disconnected.
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

// Everything but reports, whose packets are this byte and then the report as it is.
using Message = std::variant<ServiceHello, EndOfServices, PropertyWrite, PropertyAnswer, OpenRequest, OpenAnswer>;
inline constexpr std::uint8_t reportMark = 7;

inline constexpr std::size_t maximumServices = 256;
inline constexpr std::size_t maximumMessage = 1024; // bytes; longer packets are no messages
inline constexpr std::size_t maximumReport = 256;   // bytes

std::vector<std::uint8_t> encode(const Message& message);

// Nothing unless the packet is one whole message and no more.
std::optional<Message> decode(std::span<const std::uint8_t> packet);

} // namespace quiverly::laptop
