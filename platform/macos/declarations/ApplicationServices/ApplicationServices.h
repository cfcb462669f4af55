// The accessibility permission, beside what the umbrella brings in.
#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <CoreGraphics/CoreGraphics.h>

extern "C" {

extern const CFStringRef kAXTrustedCheckOptionPrompt;
Boolean AXIsProcessTrusted();
Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef options);
}
