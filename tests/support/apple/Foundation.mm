#include <Foundation/Foundation.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include <Block.h>

#include "support/apple/AppleServices.h"
#include "support/apple/AppleState.h"

NS_ASSUME_NONNULL_BEGIN

using quiverly::AppleServices;

namespace fs = std::filesystem;

extern "C" { // of the Objective-C runtime
id class_createInstance(Class aClass, std::size_t extraBytes);
Class class_getSuperclass(Class aClass);
}

namespace {

Class classOf(id object) {
    return *static_cast<const Class*>(static_cast<const void*>(object)); // its first word
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
    return class_createInstance(self, sizeof(Class));
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
@end

// What the compiler makes of @autoreleasepool without automatic reference counting.
@interface NSAutoreleasePool : NSObject
- (void)drain;
@end

@implementation NSAutoreleasePool
- (instancetype)init {
    ++AppleServices::current().pools;
    return self;
}
- (void)drain {
    --AppleServices::current().pools;
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
// Enough of it to tell which of the two names is asked about.
- (NSComparisonResult)localizedStandardCompare:(NSString*)string {
    const int difference = std::atoi(self.UTF8String) - std::atoi(string.UTF8String);
    return difference < 0 ? NSOrderedAscending : difference > 0 ? NSOrderedDescending : NSOrderedSame;
}
@end

// What the compiler is told to make of a text in the source.
@interface LiteralString : NSString
@end

@implementation LiteralString
- (nullable const char*)UTF8String {
    return static_cast<const char* const*>(static_cast<const void*>(self))[1];
}
@end

@implementation NSNumber
- (double)doubleValue {
    return stateOf<double>(self);
}
@end

@implementation NSArray
- (NSUInteger)count {
    return stateOf<std::vector<id>>(self).size();
}
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained _Nullable[_Nonnull])buffer
                                    count:(NSUInteger)len {
    auto& elements = stateOf<std::vector<id>>(self);
    const bool isOver = state->state != 0;
    state->state = 1;
    state->itemsPtr = elements.data();
    state->mutationsPtr = &state->extra[0];
    return isOver ? 0 : elements.size();
}
@end

@implementation NSURL
+ (nullable instancetype)URLWithString:(NSString*)URLString {
    const std::string text = textOf(URLString);
    if (text.find(':') == std::string::npos) return nil;
    return makeURL(text);
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
@end

@implementation NSBundle
+ (NSBundle*)mainBundle {
    return [NSBundle alloc];
}
- (nullable NSURL*)URLForResource:(nullable NSString*)name withExtension:(nullable NSString*)ext {
    const fs::path file = AppleServices::current().resources / (textOf(name) + '.' + textOf(ext));
    return fs::exists(file) ? makeURL(file) : nil;
}
- (nullable NSArray<NSURL*>*)URLsForResourcesWithExtension:(nullable NSString*)ext
                                              subdirectory:(nullable NSString*)subpath {
    const fs::path folder = AppleServices::current().resources / textOf(subpath);
    if (!fs::exists(folder)) return nil;
    NSArray<NSURL*>* const urls = [NSArray alloc];
    auto& elements = stateOf<std::vector<id>>(urls);
    for (const auto& entry : fs::directory_iterator(folder)) {
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
    if ([object isKindOfClass:NSNumber.class]) return makeString(std::to_string([object doubleValue]));
    return nil;
}
- (void)setObject:(nullable id)value forKey:(NSString*)defaultName {
    AppleServices::current().defaults[textOf(defaultName)] = textOf(value);
}
- (void)setDouble:(double)value forKey:(NSString*)defaultName {
    AppleServices::current().defaults[textOf(defaultName)] = value;
}
@end

namespace {

struct ThreadState {
    NSString* name;
    NSUInteger stackSize;
    void (^block)(void);
};

} // namespace

@implementation NSThread
- (instancetype)initWithBlock:(void (^)(void))block {
    stateOf<ThreadState>(self).block = Block_copy(block);
    return self;
}
- (nullable NSString*)name {
    return stateOf<ThreadState>(self).name;
}
- (void)setName:(nullable NSString*)name {
    stateOf<ThreadState>(self).name = name;
}
- (NSUInteger)stackSize {
    return stateOf<ThreadState>(self).stackSize;
}
- (void)setStackSize:(NSUInteger)stackSize {
    stateOf<ThreadState>(self).stackSize = stackSize;
}
- (void)start {
    const ThreadState& state = stateOf<ThreadState>(self);
    AppleServices::current().calls.push_back("start " + textOf(state.name) + ' ' + std::to_string(state.stackSize));
    std::thread([block = state.block] {
        block();
        Block_release(block);
    }).detach();
}
@end

NS_ASSUME_NONNULL_END
