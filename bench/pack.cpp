// What it costs to load a user's own pack of 500 clips from its folder, beside the least that it could cost: a bare
// walk through the same folder.

#include <benchmark/benchmark.h>
#include <dirent.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>

#include "sound/SoundPlayer.h"

namespace quiverly {
namespace {

constexpr int clipCount = 500;

// A data folder of the user's with one pack, for as long as it lives.
class OwnPack {
public:
    OwnPack() {
        std::string name = std::filesystem::temp_directory_path() / "quiverly-bench-XXXXXX";
        if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("Cannot make a folder like " + name);
        data = name;
        std::filesystem::create_directories(folder());
        for (int number = 1; number <= clipCount; ++number) {
            const auto clip = folder() / (std::to_string(number) + ".mp3");
            if (!std::ofstream(clip)) throw std::runtime_error("Cannot write " + clip.string());
        }
        ::setenv("XDG_DATA_HOME", data.c_str(), 1); // NOLINT(concurrency-mt-unsafe): there is one thread
    }
    ~OwnPack() {
        ::unsetenv("XDG_DATA_HOME"); // NOLINT(concurrency-mt-unsafe): there is one thread
        std::error_code forbidden;
        std::filesystem::remove_all(data, forbidden);
    }
    OwnPack(const OwnPack&) = delete;
    OwnPack& operator=(const OwnPack&) = delete;

    std::filesystem::path folder() const { return data / "quiverly/audio/pain"; }

private:
    std::filesystem::path data;
};

void load() {
    SoundPlayer player;
    player.load(SoundPack::pain);
    benchmark::DoNotOptimize(player);
}

void walk(const std::filesystem::path& folder) {
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(::opendir(folder.c_str()), ::closedir);
    // NOLINTNEXTLINE(concurrency-mt-unsafe): no other thread reads this stream
    while (const dirent* entry = ::readdir(entries.get())) benchmark::DoNotOptimize(entry);
}

// Of work done in a new process, as it was before its first load.
double secondsInNewProcess(void (*work)()) {
    using Clock = std::chrono::steady_clock;
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0) throw std::runtime_error("There is no pipe.");
    const pid_t child = ::fork();
    if (child == 0) {
        const Clock::time_point start = Clock::now();
        work();
        const std::chrono::duration<double> passed = Clock::now() - start;
        const double seconds = passed.count();
        ::_exit(::write(ends[1], &seconds, sizeof seconds) == sizeof seconds ? EXIT_SUCCESS : EXIT_FAILURE);
    }
    ::close(ends[1]);
    double seconds = 0;
    const bool answered = child > 0 && ::read(ends[0], &seconds, sizeof seconds) == sizeof seconds;
    ::close(ends[0]);
    if (child > 0) ::waitpid(child, nullptr, 0);
    if (!answered) throw std::runtime_error("The new process did not answer.");
    return seconds;
}

// The first load of a process also sets up the natural order of names. Nothing is loaded in this process before it.

void firstLoad(benchmark::State& state) {
    const OwnPack pack;
    while (state.KeepRunning()) state.SetIterationTime(secondsInNewProcess(load));
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(firstLoad)->Name("first load")->Unit(benchmark::kMicrosecond)->UseManualTime();

void everyFurtherLoad(benchmark::State& state) {
    const OwnPack pack;
    while (state.KeepRunning()) load();
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(everyFurtherLoad)->Name("load")->Unit(benchmark::kMicrosecond)->UseRealTime();

void bareWalk(benchmark::State& state) {
    const OwnPack pack;
    const std::filesystem::path folder = pack.folder();
    while (state.KeepRunning()) walk(folder);
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(bareWalk)->Name("first load/floor")->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(bareWalk)->Name("load/floor")->Unit(benchmark::kMicrosecond)->UseRealTime();

} // namespace
} // namespace quiverly
