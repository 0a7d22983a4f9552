#include "engine/FakeAccelerometerReader.h"

#include "sensing/AccelerometerReader.h"

namespace quiverly {

FakeReader& FakeReader::current() {
    static FakeReader instance;
    return instance;
}

void FakeReader::deliver(double x, double y, double z) const {
    reader->onSample(x, y, z);
}

AccelerometerReader::AccelerometerReader() {
    FakeReader::current() = {};
    FakeReader::current().reader = this;
}

AccelerometerReader::~AccelerometerReader() = default;

bool AccelerometerReader::start() {
    FakeReader& fake = FakeReader::current();
    ++fake.startCalls;
    openError = fake.starts ? std::nullopt : fake.message;
    return fake.starts;
}

void AccelerometerReader::stop() {
    ++FakeReader::current().stopCalls;
}

// Runs always, so that no test can mistake it for the engine's own state.
bool AccelerometerReader::isRunning() const {
    return true;
}

const std::optional<std::string>& AccelerometerReader::lastOpenError() const {
    return openError;
}

} // namespace quiverly
