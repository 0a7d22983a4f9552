#include "platform/workspace.h"

#import <AppKit/AppKit.h>

#include "platform/macos/foundation_text.h"
#include "platform/shared/input_monitoring.h"

namespace quiverly {

std::optional<std::string> workspace::sensorAccessPage() {
    return inputMonitoringPage;
}

void workspace::openURL(const std::string& url) {
    NSURL* const page = [NSURL URLWithString:foundationText(url)];
    if (page.scheme != nil) [NSWorkspace.sharedWorkspace openURL:page];
}

} // namespace quiverly
