// The preferences of an application, by domain.
#pragma once

#include <CoreFoundation/CFBase.h>

extern "C" {

using CFPropertyListRef = CFTypeRef;
extern const CFStringRef kCFPreferencesCurrentApplication;

CFPropertyListRef CFPreferencesCopyAppValue(CFStringRef key, CFStringRef domain);
/// `exists` tells whether there is a value that can be read as a boolean.
Boolean CFPreferencesGetAppBooleanValue(CFStringRef key, CFStringRef domain, Boolean* exists);
/// No value removes the key.
void CFPreferencesSetAppValue(CFStringRef key, CFPropertyListRef value, CFStringRef domain);
Boolean CFPreferencesAppSynchronize(CFStringRef domain);
}
