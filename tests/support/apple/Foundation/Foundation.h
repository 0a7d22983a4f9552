#pragma once

// The part of Foundation that Quiverly uses, declared after Apple's published documentation. Classes adopt no
// protocols, whose layout GNU's runtime does not know.

#include <CoreFoundation/CoreFoundation.h>
#include <CoreServices/CoreServices.h>

#define NS_ASSUME_NONNULL_BEGIN _Pragma("clang assume_nonnull begin")
#define NS_ASSUME_NONNULL_END _Pragma("clang assume_nonnull end")
#define NS_RETURNS_INNER_POINTER __attribute__((objc_returns_inner_pointer))

#define nil nullptr
#define YES __objc_yes
#define NO __objc_no

typedef bool BOOL;
typedef long NSInteger;
typedef unsigned long NSUInteger;

NS_ASSUME_NONNULL_BEGIN

@class NSArray<ObjectType>;
@class NSError;
@class NSString;

@protocol NSObject
- (BOOL)isKindOfClass:(Class)aClass;
@end

__attribute__((objc_root_class))
@interface NSObject
- (BOOL)isKindOfClass:(Class)aClass;
+ (instancetype)alloc;
+ (Class)class;
- (instancetype)init;
- (void)dealloc;
@end

typedef struct {
    unsigned long state;
    id __unsafe_unretained _Nullable* _Nullable itemsPtr;
    unsigned long* _Nullable mutationsPtr;
    unsigned long extra[5];
} NSFastEnumerationState;

typedef enum __attribute__((enum_extensibility(closed))) NSComparisonResult : NSInteger {
    NSOrderedAscending = -1L,
    NSOrderedSame,
    NSOrderedDescending
} NSComparisonResult;

typedef NSUInteger NSStringEncoding;
enum : NSStringEncoding { NSUTF8StringEncoding = 4 };

@interface NSString : NSObject
@property(nullable, readonly) const char* UTF8String NS_RETURNS_INNER_POINTER;
- (nullable instancetype)initWithBytes:(const void*)bytes length:(NSUInteger)len encoding:(NSStringEncoding)encoding;
- (NSComparisonResult)localizedStandardCompare:(NSString*)string;
@end

@interface NSNumber : NSObject
@property(readonly) double doubleValue;
@end

@interface NSArray<__covariant ObjectType> : NSObject
@property(readonly) NSUInteger count;
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained _Nullable[_Nonnull])buffer
                                    count:(NSUInteger)len;
@end

@interface NSURL : NSObject
@property(readonly) const char* fileSystemRepresentation NS_RETURNS_INNER_POINTER;
@property(nullable, readonly, copy) NSString* scheme;
+ (nullable instancetype)URLWithString:(NSString*)URLString;
+ (NSURL*)fileURLWithFileSystemRepresentation:(const char*)path
                                  isDirectory:(BOOL)isDir
                                relativeToURL:(nullable NSURL*)baseURL;
@end

@interface NSBundle : NSObject
@property(class, readonly, strong) NSBundle* mainBundle;
@property(nullable, readonly, copy) NSURL* resourceURL;
- (nullable NSURL*)URLForResource:(nullable NSString*)name withExtension:(nullable NSString*)ext;
- (nullable NSArray<NSURL*>*)URLsForResourcesWithExtension:(nullable NSString*)ext
                                              subdirectory:(nullable NSString*)subpath;
@end

@interface NSUserDefaults : NSObject
@property(class, readonly, strong) NSUserDefaults* standardUserDefaults;
- (nullable id)objectForKey:(NSString*)defaultName;
- (nullable NSString*)stringForKey:(NSString*)defaultName;
- (void)setObject:(nullable id)value forKey:(NSString*)defaultName;
- (void)setDouble:(double)value forKey:(NSString*)defaultName;
@end

typedef enum NSActivityOptions : uint64_t {
    NSActivityUserInitiatedAllowingIdleSystemSleep = 0x00EFFFFFULL
} NSActivityOptions;

@interface NSProcessInfo : NSObject
@property(class, readonly, strong) NSProcessInfo* processInfo;
- (id<NSObject>)beginActivityWithOptions:(NSActivityOptions)options reason:(NSString*)reason;
- (void)endActivity:(id<NSObject>)activity;
@end

@interface NSAppleEventDescriptor : NSObject
+ (NSAppleEventDescriptor*)nullDescriptor;
@end

@interface NSAppleEventManager : NSObject
+ (NSAppleEventManager*)sharedAppleEventManager;
- (void)setEventHandler:(id)handler
            andSelector:(SEL)handleEventSelector
          forEventClass:(AEEventClass)eventClass
             andEventID:(AEEventID)eventID;
- (void)removeEventHandlerForEventClass:(AEEventClass)eventClass andEventID:(AEEventID)eventID;
@end

NS_ASSUME_NONNULL_END
