#pragma once

#include <optional>
#include <string>

namespace quiverly {

class AccelerometerReader;

// What the AccelerometerReader of FakeAccelerometerReader.cpp answers, and how often it was called. It opens nothing
// and can do what the real one cannot, such as failing without a reason. Link it instead of quiverly_sensing.
struct FakeReader {
    bool starts = true;
    std::optional<std::string> message; // lastOpenError() after a start that failed
    int startCalls = 0;
    int stopCalls = 0;
    AccelerometerReader* reader = nullptr; // the one that was built last

    // Has the reader deliver a sample, as one that the real one would drop.
    void deliver(double x, double y, double z) const;

    static FakeReader& current();
};

} // namespace quiverly
