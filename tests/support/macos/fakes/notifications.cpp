#include "support/macos/fakes/objects.h"
#include "support/macos/fakes/world.h"

#include <algorithm>
#include <optional>

using hopsel::macos_fakes::Kind;
using hopsel::macos_fakes::Object;

struct HopselCFNotificationCenter final : Object {
    HopselCFNotificationCenter() : Object(Kind::center, true) {}

    struct Registration {
        const void* observer;
        CFNotificationCallback callback;
        std::optional<std::string> name;
        const void* object;
    };

    bool matches(const Registration& each, CFStringRef name) const {
        return !each.name || each.name == hopsel::macos_fakes::text(name);
    }

    void post(CFStringRef name, const void* object, CFDictionaryRef userInfo) {
        for (const Registration& each : std::vector(registrations)) {
            if (matches(each, name) && (each.object == nullptr || each.object == object))
                each.callback(this, const_cast<void*>(each.observer), name, object, userInfo);
        }
    }

    std::vector<Registration> registrations;
};

namespace {
HopselCFNotificationCenter local;
HopselCFNotificationCenter distributed;
} // namespace

CFNotificationCenterRef CFNotificationCenterGetLocalCenter() { return &local; }
CFNotificationCenterRef CFNotificationCenterGetDistributedCenter() { return &distributed; }

void CFNotificationCenterAddObserver(CFNotificationCenterRef center, const void* observer,
                                     CFNotificationCallback callback, CFNotificationName name,
                                     const void* object, CFNotificationSuspensionBehavior behavior) {
    // A program in the background would wait for all but these: the world acts as if it always were there.
    if (center == &distributed && behavior != CFNotificationSuspensionBehaviorDeliverImmediately) return;
    std::optional<std::string> wanted;
    if (name != nullptr) wanted = hopsel::macos_fakes::text(name);
    center->registrations.push_back({observer, callback, std::move(wanted), object});
}

void CFNotificationCenterRemoveObserver(CFNotificationCenterRef center, const void* observer,
                                        CFNotificationName name, const void* object) {
    std::erase_if(center->registrations, [&](const auto& each) {
        return each.observer == observer && (object == nullptr || each.object == object) &&
               (name == nullptr || each.name == hopsel::macos_fakes::text(name));
    });
}

void CFNotificationCenterRemoveEveryObserver(CFNotificationCenterRef center, const void* observer) {
    CFNotificationCenterRemoveObserver(center, observer, nullptr, nullptr);
}

void CFNotificationCenterPostNotification(CFNotificationCenterRef center, CFNotificationName name,
                                          const void* object, CFDictionaryRef userInfo, Boolean) {
    center->post(name, object, userInfo);
}

namespace hopsel::macos_fakes {

void postDistributed(CFStringRef name) { distributed.post(name, nullptr, nullptr); }

std::size_t distributedObservers(CFStringRef name) {
    return static_cast<std::size_t>(
        std::count_if(distributed.registrations.begin(), distributed.registrations.end(),
                      [&](const auto& each) { return name == nullptr || each.name == text(name); }));
}

} // namespace hopsel::macos_fakes
