// The program's own bundle.
#pragma once

#include <CoreFoundation/CFBase.h>

extern "C" {

using CFBundleRef = struct HopselCFBundle*;

CFBundleRef CFBundleGetMainBundle();
CFStringRef CFBundleGetIdentifier(CFBundleRef bundle);
/// Not retained for the caller.
CFTypeRef CFBundleGetValueForInfoDictionaryKey(CFBundleRef bundle, CFStringRef key);
}
