#include "support/macos/fakes/locale.h"

#include "support/macos/fakes/objects.h"

#include <CoreFoundation/CFLocale.h>

namespace {

hopsel::macos_fakes::Held& languages() {
    static hopsel::macos_fakes::Held held(nullptr);
    return held;
}

} // namespace

CFArrayRef CFLocaleCopyPreferredLanguages() {
    const CFTypeRef value = languages().get();
    return static_cast<CFArrayRef>(value != nullptr ? CFRetain(value) : nullptr);
}

namespace hopsel::macos_fakes {

void setPreferredLanguages(CFTypeRef value) { languages() = Held(value); }

} // namespace hopsel::macos_fakes
