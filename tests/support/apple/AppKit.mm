#include <AppKit/AppKit.h>

#include <string>

#include "support/apple/AppleServices.h"

@implementation NSWorkspace
+ (NSWorkspace*)sharedWorkspace {
    return [NSWorkspace alloc];
}
- (BOOL)openURL:(NSURL*)url {
    quiverly::AppleServices::current().calls.push_back(std::string("open ") + url.fileSystemRepresentation);
    return YES;
}
@end
