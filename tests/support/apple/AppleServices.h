#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/defaults.h"

namespace quiverly {

// What is behind the stand-ins of Foundation, AVFoundation and AppKit: a machine with one user, and a note of what it
// was asked to do. In force while it is alive; one at a time. Nothing of it is locked: look at it when no thread runs.
// It holds an autorelease pool for the main thread; an object that outlives that ends the program with a message.
struct AppleServices {
    AppleServices();
    ~AppleServices();
    AppleServices(const AppleServices&) = delete;
    AppleServices& operator=(const AppleServices&) = delete;

    std::map<std::string, defaults::Object> defaults; // the user's
    std::filesystem::path resources;                  // folder of the main bundle's
    std::vector<std::string> calls;                   // of players, threads and the workspace, as in "volume 0.5"

    std::map<std::pair<unsigned, unsigned>, std::function<void()>> eventHandlers; // by class and ID of Apple events

    static AppleServices& current();
    static std::string& threadName(); // of the calling thread

private:
    void* pool;
};

} // namespace quiverly
