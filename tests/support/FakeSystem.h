#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/sensors/iio/Accelerometer.h"
#include "support/Environment.h"
#include "support/TemporaryFolder.h"

namespace quiverly {

// A folder laid out as Linux lays out /sys for Industrial I/O, which programs take for /sys while this lives;
// afterwards they find no sensors.
class FakeSystem : public TemporaryFolder {
public:
    FakeSystem() { setVariable("QUIVERLY_SYS", path().c_str()); }
    ~FakeSystem() { setVariable("QUIVERLY_SYS", "/dev/null"); }
    FakeSystem(const FakeSystem&) = delete;
    FakeSystem& operator=(const FakeSystem&) = delete;

    // A device without attributes, driven by that driver. `parent` is a folder below devices. Returns its own folder.
    std::filesystem::path addDevice(int number, std::string_view driver,
                                    const std::filesystem::path& parent = "i2c/1-000f") const {
        const std::string name = "iio:device" + std::to_string(number);
        auto folder = addFolder("devices" / parent / name);
        addFolder(std::filesystem::path("bus/drivers") / driver);
        addFolder("bus/iio/devices");
        if (!is_symlink(folder.parent_path() / "driver")) {
            create_directory_symlink(path() / "bus/drivers" / driver, folder.parent_path() / "driver");
        }
        create_directory_symlink(folder, path() / "bus/iio/devices" / name);
        return folder;
    }

    // An accelerometer that lies still, with about a thousand steps to one g.
    std::filesystem::path addAccelerometer(int number = 0, std::string_view driver = "kxcjk1013",
                                           const std::filesystem::path& parent = "i2c/1-000f") const {
        auto folder = addDevice(number, driver, parent);
        set(folder / "name", "kxcj9");
        set(folder / "in_accel_scale", "0.009582");
        set(folder / "in_accel_x_raw", "-12");
        set(folder / "in_accel_y_raw", "25");
        set(folder / "in_accel_z_raw", "1023");
        return folder;
    }

    // Gives an attribute that line, longer than any before.
    void set(const std::filesystem::path& attribute, std::string_view line) const {
        addFile(attribute.lexically_relative(path()), std::string(line) + '\n');
    }

    std::vector<Accelerometer> found() const { return findAccelerometers(path()); }
};

} // namespace quiverly
