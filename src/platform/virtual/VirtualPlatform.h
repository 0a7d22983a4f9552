#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "platform/calendar.h"
#include "platform/defaults.h"
#include "platform/shared/input_monitoring.h"
#include "platform/virtual/VirtualAudio.h"
#include "platform/virtual/VirtualMainQueue.h"
#include "platform/virtual/VirtualRegistry.h"
#include "platform/virtual/VirtualThreads.h"

namespace quiverly {

// The calendar clock. It stands still until it is set. Any thread may read it while no other sets it.
struct VirtualCalendar {
    calendar::TimePoint now{std::chrono::seconds{1'700'000'000}}; // November 2023

    void advance(std::chrono::nanoseconds time) { now += time; }
};

// The settings store, in memory.
struct VirtualDefaults {
    std::map<std::string, defaults::Object> values;
    std::function<void(const std::string& key, const defaults::Object& value)> onWrite; // before each write
};

// Chance that repeats itself: the same seed, the same choices.
struct VirtualRandom {
    std::mt19937_64 generator{0};
};

// Folders that hold resources. File names are ordered in English whatever the machine's locale.
struct VirtualResources {
    std::vector<std::filesystem::path> folders; // the first that has what is asked for answers
};

// The desktop. It shows nothing, and records what it was asked to show.
struct VirtualWorkspace {
    std::optional<std::string> sensorAccessPage = inputMonitoringPage;
    std::function<void(const std::string& url)> onOpen;
};

// A laptop that exists only in memory: every port of the road is answered by one of its parts, so that whatever happens
// on it happens again to the bit.
//
// The ports serve the one instance that is alive. Its destruction, after that of everything that runs on it, ends the
// program with a message if anything opened was not closed or anything lent was not given back.
class VirtualPlatform {
public:
    VirtualPlatform();
    ~VirtualPlatform();
    VirtualPlatform(const VirtualPlatform&) = delete;
    VirtualPlatform& operator=(const VirtualPlatform&) = delete;

    static VirtualPlatform& current() {
        if (instance == nullptr) fault("a port was called while there is none");
        return *instance;
    }

    // Ends the program: something broke the rules of a port.
    [[noreturn]] static void fault(const std::string& what);

    VirtualCalendar calendar;
    VirtualThreads threads;
    VirtualRegistry registry;
    VirtualMainQueue mainQueue;
    VirtualResources resources;
    VirtualRandom random;
    VirtualAudio audio;
    VirtualDefaults defaults;
    VirtualWorkspace workspace;

private:
    static inline VirtualPlatform* instance = nullptr;
};

} // namespace quiverly
