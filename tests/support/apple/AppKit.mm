#include <AppKit/AppKit.h>

#include <string>

#include "support/apple/AppleServices.h"

NS_ASSUME_NONNULL_BEGIN

@implementation NSWorkspace
+ (NSWorkspace*)sharedWorkspace {
    return [NSWorkspace alloc];
}
- (BOOL)openURL:(NSURL*)url {
    quiverly::AppleServices::current().calls.push_back(std::string("open ") + url.fileSystemRepresentation);
    return YES;
}
@end

NS_ASSUME_NONNULL_END
