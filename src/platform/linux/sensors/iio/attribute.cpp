#include "platform/linux/sensors/iio/attribute.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cmath>

#include <fast_float/fast_float.h>

#include "sockets/FileDescriptor.h"

namespace quiverly {

tl::expected<std::string, std::error_code> attributeText(const std::filesystem::path& file) {
    const FileDescriptor attribute(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    std::array<char, 255> bytes; // NOLINT: filled by the next call
    const ssize_t length = attribute ? ::read(attribute.get(), bytes.data(), bytes.size()) : -1;
    if (length < 0) return tl::unexpected(std::error_code(errno, std::generic_category()));
    const std::string_view text(bytes.data(), static_cast<std::size_t>(length));
    return std::string(text.substr(0, text.find('\n')));
}

std::optional<double> attributeNumber(std::string_view text) {
    double value = 0.0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = fast_float::from_chars(text.data(), end, value, fast_float::chars_format::fixed);
    if (rest != end || text.empty() || error == std::errc::invalid_argument || !std::isfinite(value))
        return std::nullopt;
    return value;
}

} // namespace quiverly
