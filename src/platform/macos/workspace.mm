#include "platform/workspace.h"

#import <AppKit/AppKit.h>

#include "platform/macos/foundation_text.h"

namespace quiverly {

std::optional<std::string> workspace::sensorAccessPage() {
    return "x-apple.systempreferences:com.apple.preference.security?Privacy_ListenEvent";
}

void workspace::openURL(const std::string& url) {
    NSURL* const page = [NSURL URLWithString:foundationText(url)];
    if (page != nil) [NSWorkspace.sharedWorkspace openURL:page];
}

} // namespace quiverly
