#include "platform/virtual/VirtualDefaults.h"

#include "platform/virtual/VirtualPlatform.h"

namespace quiverly {

namespace {

void write(const char* key, const defaults::Object& value) {
    VirtualDefaults& store = VirtualPlatform::current().defaults;
    if (store.onWrite) store.onWrite(key, value);
    store.values.insert_or_assign(key, value);
}

} // namespace

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
    write(key, value);
}

void defaults::setNumber(const char* key, double value) {
    write(key, value);
}

} // namespace quiverly
