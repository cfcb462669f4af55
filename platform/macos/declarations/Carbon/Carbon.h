// Text input sources, and whether a password is being typed.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

extern "C" {

enum : OSStatus { noErr = 0, paramErr = -50 };

using TISInputSourceRef = struct HopselTISInputSource*;

extern const CFStringRef kTISPropertyInputSourceCategory;
extern const CFStringRef kTISPropertyInputSourceID;
extern const CFStringRef kTISPropertyLocalizedName;
extern const CFStringRef kTISPropertyInputSourceType;
extern const CFStringRef kTISPropertyInputSourceLanguages;
extern const CFStringRef kTISPropertyInputSourceIsSelectCapable;
extern const CFStringRef kTISCategoryKeyboardInputSource;
extern const CFStringRef kTISNotifySelectedKeyboardInputSourceChanged;
extern const CFStringRef kTISNotifyEnabledKeyboardInputSourcesChanged;

CFArrayRef TISCreateInputSourceList(CFDictionaryRef filter, Boolean includeAllInstalled);
/// Not retained for the caller.
void* TISGetInputSourceProperty(TISInputSourceRef source, CFStringRef key);
TISInputSourceRef TISCopyCurrentKeyboardInputSource();
OSStatus TISSelectInputSource(TISInputSourceRef source);

Boolean IsSecureEventInputEnabled();
}
