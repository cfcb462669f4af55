// What a test sees and steers of the faked system: time, objects, notifications, preferences.
//
// One world a process; to be reset between tests.
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
/// Sources stay, as leaks to be seen.
void resetLoop();

/// Delivers to everyone who was registered when it was called, also to those who leave meanwhile.
void postDistributed(CFStringRef name);
std::size_t distributedObservers();

void resetPreferences();

} // namespace hopsel::macos_fakes
