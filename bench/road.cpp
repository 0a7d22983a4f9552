// What the road of one slap costs for each report and each sample, beside the least that it could cost: a bare loop
// over the same bytes.

#include <benchmark/benchmark.h>

#include <unistd.h>

#include <array>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#include "engine/BonkoEngine.h"
#include "platform/virtual/VirtualPlatform.h"
#include "platform/virtual/sensor_report.h"
#include "sound/SoundPlayer.h"

namespace quiverly {
namespace {

constexpr int blockSize = 1024; // items of one iteration

struct Sample {
    double x; // g
    double y;
    double z;
};

// What a device at rest measures, with the noise of its sensor.
std::vector<Sample> blockOfSamples() {
    std::mt19937_64 generator{1};
    std::normal_distribution<double> noise{0.0, 0.003};
    std::vector<Sample> samples(blockSize);
    for (Sample& sample : samples) sample = {noise(generator), noise(generator), 1.0 + noise(generator)};
    return samples;
}

std::vector<std::vector<std::uint8_t>> blockOfReports() {
    std::vector<std::vector<std::uint8_t>> reports;
    for (const auto& [x, y, z] : blockOfSamples()) reports.push_back(sensorReport(x, y, z));
    return reports;
}

// Calls what the reader registered for the reports of its device, without a device between.
class Driver {
public:
    explicit Driver(const VirtualPlatform& platform) : reader(platform.registry.lastRegistration) {}

    void report(std::vector<std::uint8_t>& bytes) const {
        reader.callback(reader.context, hid::success, nullptr, 0, 0, bytes.data(), std::ssize(bytes));
    }

private:
    VirtualRegistry::Registration reader;
};

// The sum of the raw axes of a report.
std::int64_t sumOf(const std::vector<std::uint8_t>& report) {
    std::array<std::int32_t, 3> axes;
    std::memcpy(axes.data(), report.data() + 6, sizeof axes);
    return std::int64_t{axes[0]} + axes[1] + axes[2];
}

// Measures what `block` does, which is work on that many items.
template<class Block>
void measure(benchmark::State& state, int items, Block block) {
    while (state.KeepRunning()) block();
    state.SetItemsProcessed(state.iterations() * items);
}

// Eight reports, of which one becomes a sample for a receiver that adds it up.

void reportsToSample(benchmark::State& state) {
    auto reports = blockOfReports();
    VirtualPlatform platform;
    platform.registry.connectAccelerometer();
    AccelerometerReader reader;
    double sum = 0;
    reader.onSample = [&sum](double x, double y, double z) { sum += x + y + z; };
    reader.start();
    const Driver driver(platform);
    measure(state, blockSize / 8, [&] {
        for (auto& report : reports) driver.report(report);
        benchmark::DoNotOptimize(sum);
    });
}
BENCHMARK(reportsToSample)->Name("reports to sample");

void reportsToSampleFloor(benchmark::State& state) {
    const auto reports = blockOfReports();
    std::int64_t received = 0;
    std::int64_t sum = 0;
    measure(state, blockSize / 8, [&] {
        for (const auto& report : reports) {
            benchmark::DoNotOptimize(++received);
            if (received % 8 == 0) sum += sumOf(report);
        }
        benchmark::DoNotOptimize(sum);
    });
}
BENCHMARK(reportsToSampleFloor)->Name("reports to sample/floor");

// A sample that is not a slap.

void process(benchmark::State& state) {
    const auto samples = blockOfSamples();
    const VirtualPlatform platform;
    SlapDetector detector;
    measure(state, blockSize, [&] {
        for (const auto& [x, y, z] : samples) detector.process(x, y, z);
    });
}
BENCHMARK(process)->Name("process");

void processFloor(benchmark::State& state) {
    const auto samples = blockOfSamples();
    double sum = 0;
    measure(state, blockSize, [&] {
        for (const auto& [x, y, z] : samples) sum += std::sqrt(x * x + y * y + z * z);
        benchmark::DoNotOptimize(sum);
    });
}
BENCHMARK(processFloor)->Name("process/floor");

// Eight reports, of which one becomes a sample, which becomes a job of the main queue, which feeds the detector.

void reportsToDetector(benchmark::State& state) {
    auto reports = blockOfReports();
    VirtualPlatform platform;
    platform.registry.connectAccelerometer();
    BonkoEngine engine;
    engine.start();
    const Driver driver(platform);
    std::int64_t received = 0;
    measure(state, blockSize / 8, [&] {
        for (auto& report : reports) {
            driver.report(report);
            if (++received % 8 == 0) platform.mainQueue.runTurn();
        }
    });
}
BENCHMARK(reportsToDetector)->Name("reports to detector");
BENCHMARK(reportsToSampleFloor)->Name("reports to detector/floor");

// A slap of a long series: one every 0.55 s, 546 of them in the five minutes that an escalating pack remembers. Beside
// a pack that does not escalate.

class Clips {
public:
    Clips() {
        std::string name = std::filesystem::temp_directory_path() / "quiverly-bench-XXXXXX";
        if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("Cannot make a folder like " + name);
        folder = name;
        for (const char* pack : {"sexy", "pain"}) {
            std::filesystem::create_directories(folder / "audio" / pack);
            for (int number = 1; number <= 60; ++number) {
                std::ofstream(folder / "audio" / pack / (std::to_string(number) + ".mp3"));
            }
        }
    }
    ~Clips() {
        std::error_code forbidden;
        std::filesystem::remove_all(folder, forbidden);
    }
    Clips(const Clips&) = delete;
    Clips& operator=(const Clips&) = delete;

    std::filesystem::path folder;
};

void slapSeries(benchmark::State& state, SoundPack pack) {
    constexpr auto cooldown = std::chrono::milliseconds(550);
    const Clips clips;
    VirtualPlatform platform;
    platform.resources.folders = {clips.folder};
    SoundPlayer player;
    player.load(pack);
    const auto slap = [&] {
        platform.calendar.advance(cooldown);
        player.playSlap(0.5, false);
    };
    for (int count = 0; count < 546; ++count) slap();
    measure(state, 1, slap);
}
BENCHMARK_CAPTURE(slapSeries, escalating, SoundPack::sexy)->Name("slap of a series");
BENCHMARK_CAPTURE(slapSeries, chance, SoundPack::pain)->Name("slap of a series/floor");

} // namespace
} // namespace quiverly
