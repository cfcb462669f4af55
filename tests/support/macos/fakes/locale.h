// The faked languages of the user.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

namespace hopsel::macos_fakes {

/// What the system answers: an array as a rule; held. Nothing makes it answer nothing.
void setPreferredLanguages(CFTypeRef languages);

} // namespace hopsel::macos_fakes
