#include "platform/defaults.h"

#import <Foundation/Foundation.h>

#include "platform/macos/foundation_text.h"

namespace quiverly {

namespace {

std::optional<std::string> standardText(NSString* text) {
    const char* const bytes = text.UTF8String;
    return bytes != nullptr ? std::optional<std::string>(bytes) : std::nullopt;
}

} // namespace

std::optional<std::string> defaults::text(const char* key) {
    return standardText([NSUserDefaults.standardUserDefaults stringForKey:foundationText(key)]);
}

std::optional<defaults::Object> defaults::object(const char* key) {
    const id stored = [NSUserDefaults.standardUserDefaults objectForKey:foundationText(key)];
    if (stored == nil) return std::nullopt;
    if ([stored isKindOfClass:NSNumber.class]) return static_cast<NSNumber*>(stored).doubleValue;
    if ([stored isKindOfClass:NSString.class]) return standardText(static_cast<NSString*>(stored)).value_or("");
    return OtherObject{};
}

void defaults::setText(const char* key, const std::string& value) {
    [NSUserDefaults.standardUserDefaults setObject:foundationText(value) forKey:foundationText(key)];
}

void defaults::setNumber(const char* key, double value) {
    [NSUserDefaults.standardUserDefaults setDouble:value forKey:foundationText(key)];
}

} // namespace quiverly
