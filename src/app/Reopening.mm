#include "app/Reopening.h"

#include <utility>

#import <CoreServices/CoreServices.h>
#import <Foundation/Foundation.h>

// Receives the event "reopen application".
@interface QuiverlyReopenHandler : NSObject
- (void)reopen:(NSAppleEventDescriptor*)event withReply:(NSAppleEventDescriptor*)reply;
@end

static std::function<void()> onReopen;

@implementation QuiverlyReopenHandler
- (void)reopen:(NSAppleEventDescriptor*)event withReply:(NSAppleEventDescriptor*)reply {
    onReopen();
}
@end

namespace quiverly {

// The system's list of handlers does not retain them.
struct Reopening::Handler {
    QuiverlyReopenHandler* receiver;
};

Reopening::Reopening(std::function<void()> action) : handler(new Handler{[[QuiverlyReopenHandler alloc] init]}) {
    onReopen = std::move(action);
    [NSAppleEventManager.sharedAppleEventManager setEventHandler:handler->receiver
                                                     andSelector:@selector(reopen:withReply:)
                                                   forEventClass:kCoreEventClass
                                                      andEventID:kAEReopenApplication];
}

Reopening::~Reopening() {
    [NSAppleEventManager.sharedAppleEventManager removeEventHandlerForEventClass:kCoreEventClass
                                                                      andEventID:kAEReopenApplication];
    onReopen = nullptr;
    delete handler;
}

} // namespace quiverly
