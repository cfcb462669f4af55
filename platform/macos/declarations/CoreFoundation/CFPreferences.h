// The preferences of an application, by domain.
#pragma once

#include <CoreFoundation/CFBase.h>

extern "C" {

using CFPropertyListRef = CFTypeRef;
extern const CFStringRef kCFPreferencesCurrentApplication;

CFPropertyListRef CFPreferencesCopyAppValue(CFStringRef key, CFStringRef domain);
/// No value removes the key.
void CFPreferencesSetAppValue(CFStringRef key, CFPropertyListRef value, CFStringRef domain);
Boolean CFPreferencesAppSynchronize(CFStringRef domain);
}
