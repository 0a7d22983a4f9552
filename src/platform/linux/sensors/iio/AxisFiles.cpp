#include "platform/linux/sensors/iio/AxisFiles.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cmath>
#include <string_view>

#include "platform/linux/sensors/iio/attribute.h"

namespace quiverly {

namespace {

constexpr double range = 32767.0; // g; what 32 bits of a report hold

} // namespace

tl::expected<AxisFiles, std::error_code> AxisFiles::open(const Accelerometer& accelerometer) {
    AxisFiles files;
    for (std::size_t index = 0; index < files.axes.size(); ++index) {
        const auto path = accelerometer.rawFile(index);
        auto& axis = files.axes[index];
        axis.file = FileDescriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
        if (!axis.file) return tl::unexpected(std::error_code(errno, std::generic_category()));
        axis.offset = accelerometer.offset[index];
        axis.scale = accelerometer.scale[index] / standardGravity;
    }
    return files;
}

tl::expected<Acceleration3, std::error_code> AxisFiles::read() const {
    Acceleration3 acceleration = {};
    for (std::size_t index = 0; index < axes.size(); ++index) {
        const auto value = read(axes[index]);
        if (!value) return tl::unexpected(value.error());
        acceleration[index] = *value;
    }
    return acceleration;
}

// A text without the end of its line has been cut short.
tl::expected<double, std::error_code> AxisFiles::read(const Axis& axis) {
    std::array<char, 64> bytes; // NOLINT: filled by the next call
    const ssize_t length = ::pread(axis.file.get(), bytes.data(), bytes.size(), 0);
    if (length < 0) return tl::unexpected(std::error_code(errno, std::generic_category()));
    const std::string_view text(bytes.data(), static_cast<std::size_t>(length));
    const auto raw = text.ends_with('\n') ? attributeNumber(text.substr(0, text.size() - 1)) : std::nullopt;
    const double value = raw ? (*raw + axis.offset) * axis.scale : range;
    if (!(std::abs(value) < range)) return tl::unexpected(std::make_error_code(std::errc::bad_message));
    return value;
}

} // namespace quiverly
