// What a test sees and steers of the faked system: time, objects, notifications, preferences, the bundle.
//
// One world a process; `reset` between tests.
#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <functional>
#include <string>

namespace hopsel::macos_fakes {

/// Objects that were created and not released. Constants do not count.
long liveObjects();

/// Autorelease pools that are not emptied yet.
std::size_t openPools();

/// Virtual seconds; running the loop moves it, and nothing else.
double now();
void advance(double seconds);
/// Something outside happens in so many seconds of virtual time: the loop handles it as a source.
void after(double seconds, std::function<void()> happening);

/// Makes the loop sources of mach ports impossible to create.
void refusePortSources(bool isRefused);
/// The source is on the main loop in the common modes.
bool isOnMainLoop(CFRunLoopSourceRef source);
/// How often sources were added to the main loop and not removed again.
std::size_t sourcesOnMainLoop();

/// Delivers to everyone who was registered when it was called, also to those who leave meanwhile.
void postDistributed(CFStringRef name);
/// Registrations on the distributed center, for one name or for all.
std::size_t distributedObservers(CFStringRef name = nullptr);

/// Nothing removes the key of the main bundle's information dictionary.
void setBundleValue(CFStringRef key, CFTypeRef value);

/// Forgets happenings, timers, preferences and bundle values; sources and observers stay, as leaks to be
/// seen.
void reset();

} // namespace hopsel::macos_fakes
