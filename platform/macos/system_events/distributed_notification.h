// One registration for a notification that any process of the session may post.
//
// A member of whoever is called; the call stops with it, also for a notification that is being delivered just
// then.
#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <functional>

namespace hopsel {

class DistributedNotification {
  public:
    DistributedNotification(CFStringRef name, std::function<void()> call);
    ~DistributedNotification();
    DistributedNotification(const DistributedNotification&) = delete;
    DistributedNotification& operator=(const DistributedNotification&) = delete;

  private:
    static void callback(CFNotificationCenterRef center, void* observer, CFNotificationName name,
                         const void* object, CFDictionaryRef userInfo);

    std::function<void()> call_;
};

} // namespace hopsel
