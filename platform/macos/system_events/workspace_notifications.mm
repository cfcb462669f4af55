#include "platform/macos/system_events/workspace_notifications.h"

#import <AppKit/AppKit.h>

#include <utility>
#include <vector>

namespace hopsel {

namespace {

class LiveWorkspaceNotifications final : public WorkspaceNotifications {
  public:
    ~LiveWorkspaceNotifications() override { stop(); }

    void start(std::function<void(SystemEvent)> onEvent) override {
        stop();
        onEvent_ = std::make_shared<std::function<void(SystemEvent)>>(std::move(onEvent));
        observe(NSWorkspaceWillSleepNotification, SystemEvent::willSleep);
        observe(NSWorkspaceDidWakeNotification, SystemEvent::didWake);
        observe(NSWorkspaceSessionDidResignActiveNotification, SystemEvent::sessionResigned);
        observe(NSWorkspaceSessionDidBecomeActiveNotification, SystemEvent::sessionBecameActive);
    }

    void stop() override {
        for (const id& token : tokens_) [center() removeObserver:token];
        tokens_.clear();
        onEvent_.reset();
    }

  private:
    // These are posted here, not to the default center.
    static NSNotificationCenter* center() { return NSWorkspace.sharedWorkspace.notificationCenter; }

    void observe(NSNotificationName name, SystemEvent event) {
        const std::weak_ptr<std::function<void(SystemEvent)>> weak = onEvent_;
        tokens_.push_back([center() addObserverForName:name
                                                object:nil
                                                 queue:NSOperationQueue.mainQueue
                                            usingBlock:^(NSNotification*) {
                                              // A block that is queued already outlives its registration.
                                              const auto call = weak.lock();
                                              if (call) (*call)(event);
                                            }]);
    }

    std::shared_ptr<std::function<void(SystemEvent)>> onEvent_;
    std::vector<id> tokens_;
};

} // namespace

std::unique_ptr<WorkspaceNotifications> makeWorkspaceNotifications() {
    return std::make_unique<LiveWorkspaceNotifications>();
}

} // namespace hopsel
