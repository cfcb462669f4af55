#include "support/macos/fakes/world.h"

#include "support/macos/fakes/objects.h"

#include <algorithm>
#include <cstdlib>
#include <map>

using hopsel::macos_fakes::Held;
using hopsel::macos_fakes::Kind;
using hopsel::macos_fakes::Object;
using hopsel::macos_fakes::text;

struct HopselCFRunLoop final : Object {
    HopselCFRunLoop() : Object(Kind::loop, true) {}
    std::vector<std::pair<Held, std::string>> sources; ///< with their modes
    std::multimap<double, std::function<void()>> happenings;
    double now = 1000;
    bool refusesPortSources = false;
};

namespace {

HopselCFRunLoop& loop() {
    static HopselCFRunLoop main;
    return main;
}

bool handleSource() {
    for (const auto& [each, mode] : std::vector(loop().sources)) {
        auto& source = static_cast<HopselCFRunLoopSource&>(hopsel::macos_fakes::object(each.get()));
        if (!std::exchange(source.isSignalled, false)) continue;
        source.context.perform(source.context.info);
        return true;
    }
    const auto first = loop().happenings.begin();
    if (first == loop().happenings.end() || first->first > loop().now) return false;
    const auto happening = std::move(first->second);
    loop().happenings.erase(first);
    happening();
    return true;
}

} // namespace

const CFRunLoopMode kCFRunLoopDefaultMode = CFSTR("kCFRunLoopDefaultMode");
const CFRunLoopMode kCFRunLoopCommonModes = CFSTR("kCFRunLoopCommonModes");

CFRunLoopRef CFRunLoopGetMain() { return &loop(); }
void CFRunLoopWakeUp(CFRunLoopRef) {}

CFRunLoopRunResult CFRunLoopRunInMode(CFRunLoopMode mode, CFTimeInterval seconds,
                                      Boolean returnAfterSourceHandled) {
    if (CFEqual(mode, kCFRunLoopDefaultMode) == 0) std::abort(); // no other mode can be run itself
    if (loop().sources.empty()) return kCFRunLoopRunFinished;
    const double deadline = loop().now + seconds;
    while (true) {
        const bool isHandled = handleSource();
        if (isHandled && returnAfterSourceHandled != 0) return kCFRunLoopRunHandledSource;
        if (isHandled) continue;
        if (loop().now >= deadline) return kCFRunLoopRunTimedOut;
        const auto next = loop().happenings.begin();
        const double moment = next != loop().happenings.end() ? std::min(next->first, deadline) : deadline;
        loop().now = std::max(loop().now, moment);
    }
}

CFRunLoopSourceRef CFRunLoopSourceCreate(CFAllocatorRef, CFIndex, CFRunLoopSourceContext* context) {
    auto* made = new HopselCFRunLoopSource;
    made->context = *context;
    return made;
}

void CFRunLoopAddSource(CFRunLoopRef, CFRunLoopSourceRef source, CFRunLoopMode mode) {
    loop().sources.emplace_back(Held(source), text(mode));
}

void CFRunLoopRemoveSource(CFRunLoopRef, CFRunLoopSourceRef source, CFRunLoopMode mode) {
    const auto found = std::find_if(loop().sources.begin(), loop().sources.end(), [&](const auto& each) {
        return each.first.get() == source && each.second == text(mode);
    });
    if (found != loop().sources.end()) loop().sources.erase(found);
}

void CFRunLoopSourceSignal(CFRunLoopSourceRef source) { source->isSignalled = true; }

void CFRunLoopSourceInvalidate(CFRunLoopSourceRef source) {
    std::erase_if(loop().sources, [&](const auto& each) { return each.first.get() == source; });
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

void resetLoop() {
    loop().happenings.clear();
    loop().refusesPortSources = false;
}

} // namespace hopsel::macos_fakes
