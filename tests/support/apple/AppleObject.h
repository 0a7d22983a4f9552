#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <variant>

#include <CoreFoundation/CoreFoundation.h>

#include "platform/virtual/VirtualPlatform.h"

// The objects behind the stand-ins' references. Each counts its references and is freed with the last one, so that an
// address sanitizer catches any later use; the virtual registry counts those that are alive.
struct AppleObject {
    enum Type : CFTypeID { string = 1, number, boolean, dictionary, device };

    explicit AppleObject(Type type) : type(type) {}
    virtual ~AppleObject() = default;
    AppleObject(const AppleObject&) = delete;
    AppleObject& operator=(const AppleObject&) = delete;

    template<class Object, class... Arguments>
    static Object* create(Arguments&&... arguments) {
        quiverly::VirtualPlatform::current().registry.lend(1);
        return new Object(std::forward<Arguments>(arguments)...);
    }

    const Type type;
    mutable std::atomic<int> references = 1;
};

struct __CFString : AppleObject {
    explicit __CFString(std::string text) : AppleObject(string), text(std::move(text)) {}

    const std::string text;
};

struct __CFNumber : AppleObject {
    explicit __CFNumber(std::variant<std::int64_t, double> value) : AppleObject(number), value(value) {}

    const std::variant<std::int64_t, double> value;
};

struct AppleBoolean : AppleObject {
    AppleBoolean() : AppleObject(boolean) {}
};

// Owns its values.
struct __CFDictionary : AppleObject {
    __CFDictionary() : AppleObject(dictionary) {}
    ~__CFDictionary() override {
        for (const auto& [key, value] : values) CFRelease(value);
    }

    std::map<std::string, CFTypeRef> values;
};

struct __CFRunLoop {
    std::atomic<int> sources = 0; // devices scheduled on it
};
