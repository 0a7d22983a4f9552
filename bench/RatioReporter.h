#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

namespace quiverly {

// Prints what the console reporter prints, and after it one line for each benchmark that has a floor, which is the
// benchmark "NAME/floor": both times for one item and the ratio of the two, from the fastest repetition of each.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    RatioReporter() : ConsoleReporter(OO_None) {}

    void ReportRuns(const std::vector<Run>& runs) override;
    void Finalize() override;

    // Whether something was measured, and each benchmark beside its floor.
    bool isComplete() const;

private:
    std::map<std::string, double> nanoseconds; // for one item, by name of the benchmark
};

} // namespace quiverly
