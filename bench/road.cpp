// What the road of one slap costs for each report and each sample, beside the least that it could cost: a bare loop
// over the same bytes.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <random>
#include <vector>

#include "engine/Inspector.h"
#include "platform/virtual/VirtualPlatform.h"
#include "support/Reports.h"
#include "support/Sample.h"

namespace quiverly {
namespace {

constexpr int blockSize = 1024; // items of one iteration

// Reports of a device at rest, with the noise of its sensor.
std::vector<std::vector<std::uint8_t>> blockOfReports() {
    std::mt19937_64 generator{1};
    std::normal_distribution<double> noise{0.0, 0.003};
    std::vector<std::vector<std::uint8_t>> reports;
    while (reports.size() < blockSize) {
        reports.push_back(report(noise(generator), noise(generator), 1.0 + noise(generator)));
    }
    return reports;
}

Sample decode(const std::vector<std::uint8_t>& report) {
    std::array<std::int32_t, 3> raw;
    std::memcpy(raw.data(), report.data() + 6, sizeof raw);
    return {raw[0] / 65536.0, raw[1] / 65536.0, raw[2] / 65536.0};
}

std::vector<Sample> blockOfSamples() {
    std::vector<Sample> samples;
    for (const auto& report : blockOfReports()) samples.push_back(decode(report));
    return samples;
}

double magnitude(const Sample& sample) {
    return std::sqrt(sample.x * sample.x + sample.y * sample.y + sample.z * sample.z);
}

// The detector's arithmetic without its decisions.
struct Scorer {
    double baseline = 1.0;
    double previous = 1.0;

    double score(const Sample& sample) {
        const double now = magnitude(sample);
        baseline = baseline * 0.995 + now * 0.005;
        const double score = std::max(std::abs(now - baseline), std::abs(now - previous));
        previous = now;
        return score;
    }
};

void deliver(AccelerometerReader& reader, std::vector<std::uint8_t>& report) {
    Inspector::inputReportCallback(&reader, hid::success, nullptr, 0, 0, report.data(), std::ssize(report));
}

// The same after so many other reports. The compiler is to know neither their number nor what becomes of it.
void deliverAfter(std::int64_t others, AccelerometerReader& reader, std::vector<std::uint8_t>& report) {
    std::int64_t& counter = Inspector::decimationCounter(reader);
    counter = others;
    benchmark::DoNotOptimize(counter);
    deliver(reader, report);
    benchmark::DoNotOptimize(counter);
}

// Measures what `block` does, which is work on that many items.
template<class Block>
void measure(benchmark::State& state, int items, Block block) {
    while (state.KeepRunning()) block();
    state.SetItemsProcessed(state.iterations() * items);
}

// A report that the decimation passes over.

void skippedReport(benchmark::State& state) {
    auto reports = blockOfReports();
    AccelerometerReader reader;
    measure(state, blockSize, [&] {
        for (auto& report : reports) deliverAfter(0, reader, report);
    });
}
BENCHMARK(skippedReport)->Name("skipped report");

void skippedReportFloor(benchmark::State& state) {
    const auto reports = blockOfReports();
    std::int64_t received = 0;
    measure(state, blockSize, [&] {
        for (const auto& report : reports) {
            const auto* bytes = report.data();
            benchmark::DoNotOptimize(bytes);
            benchmark::DoNotOptimize(++received);
        }
    });
}
BENCHMARK(skippedReportFloor)->Name("skipped report/floor");

// A report that becomes a sample for a receiver that adds it up.

void decodedReport(benchmark::State& state) {
    auto reports = blockOfReports();
    AccelerometerReader reader;
    double sum = 0;
    reader.onSample = [&sum](double x, double y, double z) { sum += x + y + z; };
    measure(state, blockSize, [&] {
        for (auto& report : reports) deliverAfter(7, reader, report);
        benchmark::DoNotOptimize(sum);
    });
}
BENCHMARK(decodedReport)->Name("decoded report");

void decodedReportFloor(benchmark::State& state) {
    const auto reports = blockOfReports();
    double sum = 0;
    measure(state, blockSize, [&] {
        for (const auto& report : reports) {
            const Sample sample = decode(report);
            const double size = magnitude(sample);
            if (0.2 < size && size < 25.0) sum += sample.x + sample.y + sample.z;
        }
        benchmark::DoNotOptimize(sum);
    });
}
BENCHMARK(decodedReportFloor)->Name("decoded report/floor");

// A sample that is no slap.

void process(benchmark::State& state) {
    const auto samples = blockOfSamples();
    const VirtualPlatform platform;
    SlapDetector detector;
    measure(state, blockSize, [&] {
        for (const Sample& sample : samples) detector.process(sample.x, sample.y, sample.z);
    });
}
BENCHMARK(process)->Name("process");

void processFloor(benchmark::State& state) {
    const auto samples = blockOfSamples();
    Scorer scorer;
    double sum = 0;
    measure(state, blockSize, [&] {
        for (const Sample& sample : samples) sum += scorer.score(sample);
        benchmark::DoNotOptimize(sum);
    });
}
BENCHMARK(processFloor)->Name("process/floor");

// Eight reports, of which one becomes a sample, which becomes a job of the main queue, which feeds the detector.

void reportToDetector(benchmark::State& state) {
    auto reports = blockOfReports();
    VirtualPlatform platform;
    BonkoEngine engine;
    AccelerometerReader& reader = Inspector::reader(engine);
    measure(state, blockSize / 8, [&] {
        for (auto& report : reports) {
            deliver(reader, report);
            if (Inspector::decimationCounter(reader) % 8 == 0) platform.mainQueue.runTurn();
        }
    });
}
BENCHMARK(reportToDetector)->Name("report to detector");

void reportToDetectorFloor(benchmark::State& state) {
    const auto reports = blockOfReports();
    Scorer scorer;
    std::int64_t received = 0;
    measure(state, blockSize / 8, [&] {
        for (const auto& report : reports) {
            benchmark::DoNotOptimize(++received);
            if (received % 8 == 0) benchmark::DoNotOptimize(scorer.score(decode(report)));
        }
    });
}
BENCHMARK(reportToDetectorFloor)->Name("report to detector/floor");

} // namespace
} // namespace quiverly
