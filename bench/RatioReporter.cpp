#include "RatioReporter.h"

#include <algorithm>
#include <cstdio>

namespace quiverly {

namespace {
constexpr char floorSuffix[] = "/floor";
}

void RatioReporter::ReportRuns(const std::vector<Run>& runs) {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
        const auto items = run.counters.find("items_per_second");
        if (run.run_type != Run::RT_Iteration || items == run.counters.end()) continue;
        const std::string& name = run.run_name.function_name;
        const double time = 1e9 / items->second.value;
        double& fastest = nanoseconds.try_emplace(name, time).first->second;
        fastest = std::min(fastest, time);
    }
}

void RatioReporter::Finalize() {
    std::fprintf(stdout, "\n%-20s %12s %12s %8s\n", "one item of", "time (ns)", "floor (ns)", "ratio");
    for (const auto& [name, time] : nanoseconds) {
        const auto floor = nanoseconds.find(name + floorSuffix);
        if (floor == nanoseconds.end()) continue;
        std::fprintf(stdout, "%-20s %12.2f %12.2f %8.2f\n", name.c_str(), time, floor->second, time / floor->second);
    }
}

bool RatioReporter::isComplete() const {
    return !nanoseconds.empty() && std::ranges::all_of(nanoseconds, [this](const auto& measured) {
        const std::string& name = measured.first;
        return name.ends_with(floorSuffix) || nanoseconds.contains(name + floorSuffix);
    });
}

} // namespace quiverly
