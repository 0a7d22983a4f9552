#include <Foundation/Foundation.h>

#include <array>
#include <charconv>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <unicode/coll.h>

#include "support/apple/AppleServices.h"
#include "support/apple/AppleState.h"

NS_ASSUME_NONNULL_BEGIN

using quiverly::AppleServices;

namespace fs = std::filesystem;

extern "C" {
void (*objc_msg_lookup(id receiver, SEL selector))();
Class class_getSuperclass(Class aClass);                              // of the Objective-C runtime
id apple_allocate(Class aClass) __attribute__((ns_returns_retained)); // of AppleRuntime
}

namespace {

Class classOf(id object) {
    return (__bridge Class) * static_cast<void* const*>((__bridge const void*)object); // its first word
}

std::string textOf(NSString* string) {
    return string.UTF8String;
}

NSString* makeString(const std::string& text) {
    return [[NSString alloc] initWithBytes:text.data() length:text.size() encoding:NSUTF8StringEncoding];
}

NSURL* makeURL(const fs::path& file) {
    return [NSURL fileURLWithFileSystemRepresentation:file.c_str() isDirectory:NO relativeToURL:nil];
}

} // namespace

@implementation NSObject
+ (instancetype)alloc {
    return apple_allocate(self);
}
+ (Class)class {
    return self;
}
- (instancetype)init {
    return self;
}
- (BOOL)isKindOfClass:(Class)aClass {
    Class candidate = classOf(self);
    while (candidate != nil && candidate != aClass) candidate = class_getSuperclass(candidate);
    return candidate == aClass;
}
- (void)dealloc {
}
@end

@implementation NSString
- (nullable instancetype)initWithBytes:(const void*)bytes length:(NSUInteger)len encoding:(NSStringEncoding)encoding {
    std::string text(static_cast<const char*>(bytes), len);
    if (encoding != NSUTF8StringEncoding || text.find('\xFF') != std::string::npos) return nil;
    stateOf<std::string>(self) = std::move(text);
    return self;
}
- (nullable const char*)UTF8String {
    return stateOf<std::string>(self).c_str();
}
// As file browsers order names, in English.
- (NSComparisonResult)localizedStandardCompare:(NSString*)string {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance(icu::Locale::getEnglish(), status));
    collator->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_ON, status);
    return static_cast<NSComparisonResult>(collator->compareUTF8(self.UTF8String, string.UTF8String, status));
}
@end

// What the compiler is told to make of a text in the source.
@interface LiteralString : NSString
@end

@implementation LiteralString
- (nullable const char*)UTF8String {
    return static_cast<const char* const*>((__bridge const void*)self)[1];
}
@end

@implementation NSNumber
- (double)doubleValue {
    return stateOf<double>(self);
}
@end

@implementation NSArray
- (void)dealloc {
    stateOf<std::vector<id>>(self).clear();
}
- (NSUInteger)count {
    return stateOf<std::vector<id>>(self).size();
}
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained _Nullable[_Nonnull])buffer
                                    count:(NSUInteger)len {
    auto& elements = stateOf<std::vector<id>>(self);
    const bool isOver = state->state != 0;
    state->state = 1;
    state->itemsPtr = static_cast<id __unsafe_unretained*>(static_cast<void*>(elements.data()));
    state->mutationsPtr = &state->extra[0];
    return isOver ? 0 : elements.size();
}
@end

@implementation NSURL
// A text without a scheme is a relative address, and what no address may hold is escaped (since macOS 14): only the
// empty text is none.
+ (nullable instancetype)URLWithString:(NSString*)URLString {
    const std::string text = textOf(URLString);
    return text.empty() ? nil : makeURL(text);
}
+ (NSURL*)fileURLWithFileSystemRepresentation:(const char*)path
                                  isDirectory:(BOOL)isDir
                                relativeToURL:(nullable NSURL*)baseURL {
    NSURL* const url = [NSURL alloc];
    stateOf<std::string>(url) = path;
    return url;
}
- (const char*)fileSystemRepresentation {
    return stateOf<std::string>(self).c_str();
}
- (nullable NSString*)scheme {
    const std::string& text = stateOf<std::string>(self);
    const std::size_t colon = text.find(':');
    return colon != std::string::npos ? makeString(text.substr(0, colon)) : nil;
}
@end

@implementation NSBundle
+ (NSBundle*)mainBundle {
    return [NSBundle alloc];
}
- (nullable NSURL*)resourceURL {
    return makeURL(AppleServices::current().resources);
}
- (nullable NSURL*)URLForResource:(nullable NSString*)name withExtension:(nullable NSString*)ext {
    const fs::path file = AppleServices::current().resources / (textOf(name) + '.' + textOf(ext));
    return fs::exists(file) ? makeURL(file) : nil;
}
// A folder that is missing has no files.
- (nullable NSArray<NSURL*>*)URLsForResourcesWithExtension:(nullable NSString*)ext
                                              subdirectory:(nullable NSString*)subpath {
    const fs::path folder = AppleServices::current().resources / textOf(subpath);
    NSArray<NSURL*>* const urls = [NSArray alloc];
    auto& elements = stateOf<std::vector<id>>(urls);
    std::error_code missing;
    for (const auto& entry : fs::directory_iterator(folder, missing)) {
        if (entry.path().extension() == '.' + textOf(ext)) elements.push_back(makeURL(entry.path()));
    }
    return urls;
}
@end

@implementation NSUserDefaults
+ (NSUserDefaults*)standardUserDefaults {
    return [NSUserDefaults alloc];
}
- (nullable id)objectForKey:(NSString*)defaultName {
    const auto& defaults = AppleServices::current().defaults;
    const auto found = defaults.find(textOf(defaultName));
    if (found == defaults.end()) return nil;
    if (const auto* const text = std::get_if<std::string>(&found->second)) return makeString(*text);
    if (const auto* const value = std::get_if<double>(&found->second)) {
        NSNumber* const number = [NSNumber alloc];
        stateOf<double>(number) = *value;
        return number;
    }
    return [NSArray alloc];
}
- (nullable NSString*)stringForKey:(NSString*)defaultName {
    const id object = [self objectForKey:defaultName];
    if ([object isKindOfClass:NSString.class]) return object;
    if (![object isKindOfClass:NSNumber.class]) return nil;
    std::array<char, 32> digits;
    return makeString({digits.data(), std::to_chars(digits.begin(), digits.end(), [object doubleValue]).ptr});
}
- (void)setObject:(nullable id)value forKey:(NSString*)defaultName {
    AppleServices::current().defaults[textOf(defaultName)] = textOf(value);
}
- (void)setDouble:(double)value forKey:(NSString*)defaultName {
    AppleServices::current().defaults[textOf(defaultName)] = value;
}
@end

@implementation NSProcessInfo
+ (NSProcessInfo*)processInfo {
    return [NSProcessInfo alloc];
}
- (id<NSObject>)beginActivityWithOptions:(NSActivityOptions)options reason:(NSString*)reason {
    AppleServices::current().calls.push_back("begin " + textOf(reason));
    NSObject* const activity = [NSObject alloc];
    stateOf<std::string>(activity) = textOf(reason);
    return static_cast<id>(activity);
}
- (void)endActivity:(id<NSObject>)activity {
    AppleServices::current().calls.push_back("end " + stateOf<std::string>(activity));
}
@end

@implementation NSAppleEventDescriptor
+ (NSAppleEventDescriptor*)nullDescriptor {
    return [NSAppleEventDescriptor alloc];
}
@end

// Handlers are called as if they came from the Finder. They are not retained.
@implementation NSAppleEventManager
+ (NSAppleEventManager*)sharedAppleEventManager {
    return [NSAppleEventManager alloc];
}
- (void)setEventHandler:(id)handler
            andSelector:(SEL)handleEventSelector
          forEventClass:(AEEventClass)eventClass
             andEventID:(AEEventID)eventID {
    __unsafe_unretained const id receiver = handler;
    AppleServices::current().eventHandlers[{eventClass, eventID}] = [receiver, handleEventSelector] {
        using Method = void (*)(id, SEL, NSAppleEventDescriptor*, NSAppleEventDescriptor*);
        NSAppleEventDescriptor* const event = NSAppleEventDescriptor.nullDescriptor;
        reinterpret_cast<Method>(objc_msg_lookup(receiver, handleEventSelector))(receiver, handleEventSelector, event,
                                                                                 event);
    };
}
- (void)removeEventHandlerForEventClass:(AEEventClass)eventClass andEventID:(AEEventID)eventID {
    AppleServices::current().eventHandlers.erase({eventClass, eventID});
}
@end

NS_ASSUME_NONNULL_END
