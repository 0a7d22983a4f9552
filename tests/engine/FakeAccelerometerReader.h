#pragma once

#include <optional>
#include <string>

namespace quiverly {

// What the AccelerometerReader of FakeAccelerometerReader.cpp answers, and how often it was called. It opens nothing
// and can do what the real one cannot, such as failing without a reason. Link it instead of quiverly_sensing.
struct FakeReader {
    bool starts = true;
    std::optional<std::string> message; // lastOpenError() after a start that failed
    int startCalls = 0;
    int stopCalls = 0;

    static FakeReader& current();
};

} // namespace quiverly
