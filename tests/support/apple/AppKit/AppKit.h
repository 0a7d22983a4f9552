#pragma once

// The part of AppKit that Quiverly uses, declared after Apple's published documentation.

#include <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSWorkspace : NSObject
@property(class, readonly, strong) NSWorkspace* sharedWorkspace;
- (BOOL)openURL:(NSURL*)url;
@end

NS_ASSUME_NONNULL_END
