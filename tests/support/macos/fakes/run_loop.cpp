#include "support/macos/fakes/world.h"

#include "support/macos/fakes/internals.h"
#include "support/macos/fakes/objects.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <map>

using hopsel::macos_fakes::Held;
using hopsel::macos_fakes::Kind;
using hopsel::macos_fakes::Object;

struct HopselCFRunLoopTimer final : Object {
    HopselCFRunLoopTimer() : Object(Kind::timer) {}
    double fireDate = 0;
    double interval = 0;
    CFRunLoopTimerCallBack callBack = nullptr;
    CFRunLoopTimerContext context{};
    bool isValid = true;
};

struct HopselCFRunLoop final : Object {
    HopselCFRunLoop() : Object(Kind::loop, true) {}
    std::vector<std::pair<Held, std::string>> sources; ///< with their modes
    std::vector<Held> timers;
    std::multimap<double, std::function<void()>> happenings;
    double now = 1000;
    bool isStopped = false;
    bool refusesPortSources = false;
};

namespace {

HopselCFRunLoop& loop() {
    static HopselCFRunLoop main;
    return main;
}

HopselCFRunLoopSource& source(const Held& held) {
    return *static_cast<HopselCFRunLoopSource*>(&hopsel::macos_fakes::object(held.get()));
}
HopselCFRunLoopTimer& timer(const Held& held) {
    return *static_cast<HopselCFRunLoopTimer*>(&hopsel::macos_fakes::object(held.get()));
}

bool fireTimer() {
    for (const Held& each : std::vector(loop().timers)) {
        HopselCFRunLoopTimer& due = timer(each);
        if (!due.isValid || due.fireDate > loop().now) continue;
        if (due.interval > 0)
            due.fireDate += due.interval;
        else
            CFRunLoopTimerInvalidate(&due);
        due.callBack(&due, due.context.info);
        return true;
    }
    return false;
}

bool handleSource() {
    for (const auto& [each, mode] : std::vector(loop().sources)) {
        HopselCFRunLoopSource& signalled = source(each);
        if (!signalled.isValid || !std::exchange(signalled.isSignalled, false)) continue;
        signalled.context.perform(signalled.context.info);
        return true;
    }
    const auto first = loop().happenings.begin();
    if (first == loop().happenings.end() || first->first > loop().now) return false;
    const auto happening = std::move(first->second);
    loop().happenings.erase(first);
    happening();
    return true;
}

double nextMoment() {
    double next = std::numeric_limits<double>::infinity();
    if (!loop().happenings.empty()) next = loop().happenings.begin()->first;
    for (const Held& each : loop().timers) next = std::min(next, timer(each).fireDate);
    return next;
}

} // namespace

const CFRunLoopMode kCFRunLoopDefaultMode = CFSTR("kCFRunLoopDefaultMode");
const CFRunLoopMode kCFRunLoopCommonModes = CFSTR("kCFRunLoopCommonModes");

CFRunLoopRef CFRunLoopGetMain() { return &loop(); }
CFRunLoopRef CFRunLoopGetCurrent() { return &loop(); }
void CFRunLoopStop(CFRunLoopRef) { loop().isStopped = true; }
void CFRunLoopWakeUp(CFRunLoopRef) {}
CFAbsoluteTime CFAbsoluteTimeGetCurrent() { return loop().now; }

CFRunLoopRunResult CFRunLoopRunInMode(CFRunLoopMode mode, CFTimeInterval seconds,
                                      Boolean returnAfterSourceHandled) {
    if (CFEqual(mode, kCFRunLoopDefaultMode) == 0) std::abort(); // no other mode can be run itself
    if (loop().sources.empty() && loop().timers.empty()) return kCFRunLoopRunFinished;
    const double deadline = loop().now + seconds;
    while (true) {
        fireTimer();
        const bool isHandled = handleSource();
        if (std::exchange(loop().isStopped, false)) return kCFRunLoopRunStopped;
        if (isHandled && returnAfterSourceHandled != 0) return kCFRunLoopRunHandledSource;
        if (isHandled) continue;
        if (loop().now >= deadline) return kCFRunLoopRunTimedOut;
        loop().now = std::max(loop().now, std::min(nextMoment(), deadline));
    }
}

CFRunLoopSourceRef CFRunLoopSourceCreate(CFAllocatorRef, CFIndex, CFRunLoopSourceContext* context) {
    auto* made = new HopselCFRunLoopSource;
    made->context = *context;
    return made;
}

void CFRunLoopAddSource(CFRunLoopRef, CFRunLoopSourceRef source, CFRunLoopMode mode) {
    loop().sources.emplace_back(Held(source), hopsel::macos_fakes::text(mode));
}

void CFRunLoopRemoveSource(CFRunLoopRef, CFRunLoopSourceRef source, CFRunLoopMode mode) {
    const auto found = std::find_if(loop().sources.begin(), loop().sources.end(), [&](const auto& each) {
        return each.first.get() == source && each.second == hopsel::macos_fakes::text(mode);
    });
    if (found != loop().sources.end()) loop().sources.erase(found);
}

void CFRunLoopSourceSignal(CFRunLoopSourceRef source) { source->isSignalled = true; }

void CFRunLoopSourceInvalidate(CFRunLoopSourceRef source) {
    source->isValid = false;
    std::erase_if(loop().sources, [&](const auto& each) { return each.first.get() == source; });
}

CFRunLoopTimerRef CFRunLoopTimerCreate(CFAllocatorRef, CFAbsoluteTime fireDate, CFTimeInterval interval,
                                       CFOptionFlags, CFIndex, CFRunLoopTimerCallBack callBack,
                                       CFRunLoopTimerContext* context) {
    auto* made = new HopselCFRunLoopTimer;
    made->fireDate = fireDate;
    made->interval = interval;
    made->callBack = callBack;
    if (context != nullptr) made->context = *context;
    return made;
}

void CFRunLoopAddTimer(CFRunLoopRef, CFRunLoopTimerRef timer, CFRunLoopMode) {
    loop().timers.emplace_back(timer);
}

void CFRunLoopTimerInvalidate(CFRunLoopTimerRef timer) {
    timer->isValid = false;
    std::erase_if(loop().timers, [&](const Held& each) { return each.get() == timer; });
}

CFRunLoopSourceRef CFMachPortCreateRunLoopSource(CFAllocatorRef, CFMachPortRef port, CFIndex) {
    if (loop().refusesPortSources) return nullptr;
    return port->source = new HopselCFRunLoopSource;
}

void CFMachPortInvalidate(CFMachPortRef port) { port->isValid = false; }
Boolean CFMachPortIsValid(CFMachPortRef port) { return port->isValid ? 1 : 0; }

namespace hopsel::macos_fakes {

double now() { return loop().now; }
void advance(double seconds) { loop().now += seconds; }

void after(double seconds, std::function<void()> happening) {
    loop().happenings.emplace(loop().now + seconds, std::move(happening));
}

void refusePortSources(bool isRefused) { loop().refusesPortSources = isRefused; }

bool isOnMainLoop(CFRunLoopSourceRef source) {
    return std::any_of(loop().sources.begin(), loop().sources.end(), [&](const auto& each) {
        return each.first.get() == source && each.second == text(kCFRunLoopCommonModes);
    });
}

std::size_t sourcesOnMainLoop() { return loop().sources.size(); }

void reset() {
    loop().happenings.clear();
    loop().timers.clear();
    loop().isStopped = loop().refusesPortSources = false;
    resetPreferences();
}

} // namespace hopsel::macos_fakes
