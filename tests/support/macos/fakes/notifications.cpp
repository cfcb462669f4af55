#include "support/macos/fakes/objects.h"
#include "support/macos/fakes/world.h"

using hopsel::macos_fakes::Kind;
using hopsel::macos_fakes::Object;
using hopsel::macos_fakes::text;

struct HopselCFNotificationCenter final : Object {
    HopselCFNotificationCenter() : Object(Kind::center, true) {}

    struct Registration {
        void* observer;
        CFNotificationCallback callback;
        std::string name;
    };
    std::vector<Registration> registrations;
};

namespace {
HopselCFNotificationCenter distributed;
} // namespace

CFNotificationCenterRef CFNotificationCenterGetDistributedCenter() { return &distributed; }

void CFNotificationCenterAddObserver(CFNotificationCenterRef center, const void* observer,
                                     CFNotificationCallback callback, CFNotificationName name, const void*,
                                     CFNotificationSuspensionBehavior behavior) {
    // A program in the background would wait for all but these: the world acts as if it always were there.
    if (behavior != CFNotificationSuspensionBehaviorDeliverImmediately) return;
    center->registrations.push_back({const_cast<void*>(observer), callback, text(name)});
}

void CFNotificationCenterRemoveEveryObserver(CFNotificationCenterRef center, const void* observer) {
    std::erase_if(center->registrations, [&](const auto& each) { return each.observer == observer; });
}

namespace hopsel::macos_fakes {

void postDistributed(CFStringRef name) {
    for (const auto& each : std::vector(distributed.registrations)) {
        if (each.name == text(name)) each.callback(&distributed, each.observer, name, nullptr, nullptr);
    }
}

std::size_t distributedObservers() { return distributed.registrations.size(); }

} // namespace hopsel::macos_fakes
