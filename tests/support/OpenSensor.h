#pragma once

#include <gtest/gtest.h>

#include <array>
#include <vector>

#include "platform/hid.h"

namespace quiverly {

// The sensor that the registry's first accelerometer is, opened and scheduled on this thread. Keeps what it reports.
class OpenSensor {
public:
    OpenSensor() {
        const auto services = hid::findServices(hid::matchingClass("AppleSPUHIDDevice"));
        while (const auto service = hid::nextService(*services)) {
            const auto properties = hid::readProperties(*service);
            if (hid::integerProperty(*properties, "PrimaryUsagePage") != 0xFF00) continue;
            if (hid::integerProperty(*properties, "PrimaryUsage") != 3) continue;
            device = hid::createDevice(*service);
            break;
        }
        opened = device ? hid::open(*device) : hid::noDevice;
        if (opened != hid::success) return;
        hid::registerInputReportCallback(*device, buffer.data(), std::ssize(buffer), keep, this);
        hid::schedule(*device);
    }

    ~OpenSensor() {
        if (opened != hid::success) return;
        hid::unschedule(*device);
        hid::close(*device);
    }

    OpenSensor(const OpenSensor&) = delete;
    OpenSensor& operator=(const OpenSensor&) = delete;

    hid::ReturnCode opened = hid::generalError;
    std::vector<std::vector<std::uint8_t>> reports;

private:
    static void keep(void* context, hid::ReturnCode, void*, std::uint32_t, std::uint32_t, std::uint8_t* report,
                     std::ptrdiff_t length) {
        static_cast<OpenSensor*>(context)->reports.emplace_back(report, report + length);
    }

    hid::Handle<hid::Device> device;
    std::array<std::uint8_t, 256> buffer = {};
};

} // namespace quiverly
