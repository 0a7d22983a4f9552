#include "platform/virtual/VirtualPlatform.h"

#include <cstdio>
#include <cstdlib>

#include "platform/random.h"
#include "platform/shared/resource_folders.h"
#include "platform/workspace.h"

namespace quiverly {

namespace {

void store(const char* key, const defaults::Object& value) {
    VirtualDefaults& defaults = VirtualPlatform::current().defaults;
    if (defaults.onWrite) defaults.onWrite(key, value);
    defaults.values.insert_or_assign(key, value);
}

} // namespace

VirtualPlatform::VirtualPlatform() {
    if (instance != nullptr) fault("two of them at once");
    instance = this;
}

VirtualPlatform::~VirtualPlatform() {
    if (threads.live() != 0) fault("a thread was not waited for");
    if (registry.lentObjects() != 0) fault("a service, device or walk was not released");
    if (audio.lentPlayers() != 0) fault("an audio player was not released");
    instance = nullptr;
}

void VirtualPlatform::fault(const std::string& what) {
    std::fprintf(stderr, "virtual platform: %s\n", what.c_str());
    std::abort();
}

// The ports that need no more than a value to answer

calendar::TimePoint calendar::now() {
    return VirtualPlatform::current().calendar.now;
}

std::optional<std::string> defaults::text(const char* key) {
    const auto stored = object(key);
    const std::string* text = stored ? std::get_if<std::string>(&*stored) : nullptr;
    return text ? std::optional(*text) : std::nullopt;
}

std::optional<defaults::Object> defaults::object(const char* key) {
    const auto& values = VirtualPlatform::current().defaults.values;
    const auto stored = values.find(key);
    return stored == values.end() ? std::nullopt : std::optional(stored->second);
}

void defaults::setText(const char* key, const std::string& value) {
    store(key, value);
}

void defaults::setNumber(const char* key, double value) {
    store(key, value);
}

std::size_t random::uniformIndex(std::size_t count) {
    return std::uniform_int_distribution<std::size_t>(0, count - 1)(VirtualPlatform::current().random.generator);
}

std::vector<std::filesystem::path> resourceFolders() {
    return VirtualPlatform::current().resources.folders;
}

std::string nameOrderLocale() {
    return "en";
}

std::optional<std::string> workspace::sensorAccessPage() {
    return VirtualPlatform::current().workspace.sensorAccessPage;
}

void workspace::openURL(const std::string& url) {
    const auto& onOpen = VirtualPlatform::current().workspace.onOpen;
    if (onOpen) onOpen(url);
}

} // namespace quiverly
