#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "engine/BonkoEngine.h"
#include "tools/record/RecordingFile.h"

namespace quiverly {

// Listens in the application's stead, with its reader and its settings, and writes down what the reader receives. It
// prints the slaps that are noticed. Main thread, in an event loop.
class Recorder {
public:
    enum class Sound { on, off };

    Recorder(RecordingFile& file, Sound sound);
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;
    ~Recorder();

    // Whether the sensor could be opened. If not, error() says why, and the file has nothing but its header.
    bool start();
    std::string error() const { return engine.phase.get().message; }

    std::int64_t slaps() const { return engine.slapCount; }
    double seconds() const; // since start()

private:
    using Clock = std::chrono::steady_clock;

    std::chrono::nanoseconds time() const { return Clock::now() - begin; }
    void writeHeader(const std::string& sensor);
    void printSlaps();

    RecordingFile& file;
    const Sound sound;
    Clock::time_point begin = Clock::now();
    std::int64_t printed = 0; // slaps
    BonkoEngine engine;       // ends first
};

} // namespace quiverly
