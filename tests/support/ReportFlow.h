#pragma once

#include <atomic>
#include <cstdint>
#include <thread>
#include <vector>

#include "platform/virtual/VirtualPlatform.h"
#include "platform/virtual/sensor_report.h"

namespace quiverly {

// Reports of a laptop at rest that flow without end, on a thread of their own, for as long as this lives. The
// platform's threads must be real.
class ReportFlow {
public:
    explicit ReportFlow(VirtualPlatform& platform) : platform(platform) {}
    ~ReportFlow() { end(); }
    ReportFlow(const ReportFlow&) = delete;
    ReportFlow& operator=(const ReportFlow&) = delete;

    void end() {
        flowing = false;
        if (source.joinable()) source.join();
    }

private:
    void flow() {
        const std::vector<std::uint8_t> atRest = sensorReport(0, 0, 1);
        while (flowing) {
            if (!platform.registry.deliver(atRest)) std::this_thread::yield();
        }
    }

    VirtualPlatform& platform;
    std::atomic<bool> flowing = true;
    std::thread source{[this] { flow(); }};
};

} // namespace quiverly
