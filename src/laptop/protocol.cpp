#include "laptop/protocol.h"

#include <concepts>
#include <optional>
#include <string_view>
#include <type_traits>

namespace quiverly::laptop {

namespace {

// The kinds of messages; the values are the first bytes of their packets.
enum class Kind : std::uint8_t {
    serviceHello = 1,
    endOfServices,
    propertyWrite,
    propertyAnswer,
    openRequest,
    openAnswer,
    report = reportMark,
};

// The kinds of property values.
enum class ValueKind : std::uint8_t { integer = 1, text };

class Writer {
public:
    explicit Writer(Kind kind) { integer(static_cast<std::uint8_t>(kind)); }

    template<std::integral Integer>
    Writer& integer(Integer value) {
        const auto bits = static_cast<std::make_unsigned_t<Integer>>(value);
        for (std::size_t index = 0; index < sizeof bits; ++index) {
            bytes.push_back(static_cast<std::uint8_t>(bits >> (8 * index)));
        }
        return *this;
    }

    Writer& text(std::string_view value) {
        const std::string_view content = value.substr(0, 255);
        integer(static_cast<std::uint8_t>(content.size()));
        for (const char character : content) integer(static_cast<std::uint8_t>(character));
        return *this;
    }

    Writer& property(const std::string& key, const Value& value) {
        text(key);
        if (const auto* number = std::get_if<std::int64_t>(&value)) {
            return integer(static_cast<std::uint8_t>(ValueKind::integer)).integer(*number);
        }
        return integer(static_cast<std::uint8_t>(ValueKind::text)).text(std::get<std::string>(value));
    }

    std::vector<std::uint8_t> bytes;
};

// Takes a packet apart from front to back. What is missing reads as 0 or empty and makes the whole packet unusable.
class Parser {
public:
    explicit Parser(std::span<const std::uint8_t> packet) : rest(packet) {}

    template<std::integral Integer>
    Integer integer() {
        std::make_unsigned_t<Integer> bits = 0;
        const auto bytes = take(sizeof bits);
        for (std::size_t index = 0; index < bytes.size(); ++index) {
            bits |= static_cast<std::make_unsigned_t<Integer>>(static_cast<std::make_unsigned_t<Integer>>(bytes[index])
                                                               << (8 * index));
        }
        return static_cast<Integer>(bits);
    }

    std::string text() {
        const auto bytes = take(integer<std::uint8_t>());
        return {bytes.begin(), bytes.end()};
    }

    Value value() {
        switch (ValueKind{integer<std::uint8_t>()}) {
        case ValueKind::integer:
            return integer<std::int64_t>();
        case ValueKind::text:
            return text();
        }
        usable = false;
        return {};
    }

    std::vector<std::uint8_t> bytes() {
        const auto all = take(rest.size());
        return {all.begin(), all.end()};
    }

    bool hasMore() const { return usable && !rest.empty(); }
    bool isWhole() const { return usable && rest.empty(); }

private:
    std::span<const std::uint8_t> take(std::size_t count) {
        if (count > rest.size()) {
            usable = false;
            return {};
        }
        const auto taken = rest.first(count);
        rest = rest.subspan(count);
        return taken;
    }

    std::span<const std::uint8_t> rest;
    bool usable = true;
};

ServiceHello parseServiceHello(Parser& parser) {
    ServiceHello hello{.className = parser.text(), .properties = {}};
    while (parser.hasMore()) {
        std::string key = parser.text();
        hello.properties.insert_or_assign(std::move(key), parser.value());
    }
    return hello;
}

PropertyWrite parsePropertyWrite(Parser& parser) {
    PropertyWrite write;
    write.service = parser.integer<std::uint8_t>();
    write.key = parser.text();
    write.value = parser.integer<std::int32_t>();
    return write;
}

// Nothing for a kind that does not exist.
std::optional<Message> parse(Parser& parser) {
    switch (Kind{parser.integer<std::uint8_t>()}) {
    case Kind::serviceHello:
        return parseServiceHello(parser);
    case Kind::endOfServices:
        return EndOfServices{};
    case Kind::propertyWrite:
        return parsePropertyWrite(parser);
    case Kind::propertyAnswer:
        return PropertyAnswer{parser.integer<std::int32_t>()};
    case Kind::openRequest:
        return OpenRequest{parser.integer<std::uint8_t>()};
    case Kind::openAnswer:
        return OpenAnswer{parser.integer<std::int32_t>()};
    case Kind::report:
        return Report{parser.bytes()};
    }
    return std::nullopt;
}

struct Encoder {
    std::vector<std::uint8_t> operator()(const ServiceHello& hello) const {
        Writer writer(Kind::serviceHello);
        writer.text(hello.className);
        for (const auto& [key, value] : hello.properties) writer.property(key, value);
        return writer.bytes;
    }
    std::vector<std::uint8_t> operator()(const EndOfServices&) const { return Writer(Kind::endOfServices).bytes; }
    std::vector<std::uint8_t> operator()(const PropertyWrite& write) const {
        return Writer(Kind::propertyWrite).integer(write.service).text(write.key).integer(write.value).bytes;
    }
    std::vector<std::uint8_t> operator()(const PropertyAnswer& answer) const {
        return Writer(Kind::propertyAnswer).integer(answer.error).bytes;
    }
    std::vector<std::uint8_t> operator()(const OpenRequest& request) const {
        return Writer(Kind::openRequest).integer(request.service).bytes;
    }
    std::vector<std::uint8_t> operator()(const OpenAnswer& answer) const {
        return Writer(Kind::openAnswer).integer(answer.error).bytes;
    }
    std::vector<std::uint8_t> operator()(const Report& report) const {
        Writer writer(Kind::report);
        writer.bytes.insert(writer.bytes.end(), report.bytes.begin(), report.bytes.end());
        return writer.bytes;
    }
};

} // namespace

std::vector<std::uint8_t> encode(const Message& message) {
    return std::visit(Encoder{}, message);
}

tl::expected<Message, std::error_code> decode(std::span<const std::uint8_t> packet) {
    Parser parser(packet);
    auto message = parse(parser);
    if (!message || !parser.isWhole()) return tl::unexpected(std::make_error_code(std::errc::bad_message));
    return *std::move(message);
}

} // namespace quiverly::laptop
