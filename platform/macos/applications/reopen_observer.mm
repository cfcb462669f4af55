#include "platform/macos/applications/reopen_observer.h"

#import <AppKit/AppKit.h>

/// The target of the event, which has to be an Objective-C object.
@interface HopselReopenHandler : NSObject
- (instancetype)initWithCallback:(std::function<void()>)callback;
- (void)listen;
@end

@implementation HopselReopenHandler {
    std::function<void()> _callback;
}

- (instancetype)initWithCallback:(std::function<void()>)callback {
    self = [super init];
    if (self != nil) _callback = std::move(callback);
    return self;
}

- (void)listen {
    [NSAppleEventManager.sharedAppleEventManager setEventHandler:self
                                                     andSelector:@selector(reopen:withReply:)
                                                   forEventClass:kCoreEventClass
                                                      andEventID:kAEReopenApplication];
}

- (void)reopen:(NSAppleEventDescriptor*)event withReply:(NSAppleEventDescriptor*)reply {
    _callback();
}

@end

namespace hopsel {

struct ReopenObserver::Registration {
    HopselReopenHandler* handler;
    id launched;
};

ReopenObserver::ReopenObserver(std::function<void()> onReopen)
    : registration_(std::make_unique<Registration>()) {
    HopselReopenHandler* handler = [[HopselReopenHandler alloc] initWithCallback:std::move(onReopen)];
    registration_->handler = handler;
    [handler listen];
    // The application object puts its own handler there while it finishes launching, which may come later.
    registration_->launched =
        [NSNotificationCenter.defaultCenter addObserverForName:NSApplicationDidFinishLaunchingNotification
                                                        object:nil
                                                         queue:NSOperationQueue.mainQueue
                                                    usingBlock:^(NSNotification*) {
                                                      [handler listen];
                                                    }];
}

ReopenObserver::~ReopenObserver() {
    [NSNotificationCenter.defaultCenter removeObserver:registration_->launched];
    [NSAppleEventManager.sharedAppleEventManager removeEventHandlerForEventClass:kCoreEventClass
                                                                      andEventID:kAEReopenApplication];
}

} // namespace hopsel
