#include "support/macos/fakes/objects.h"
#include "support/macos/fakes/world.h"

#include <map>

using hopsel::macos_fakes::text;

namespace {

std::map<std::pair<std::string, std::string>, hopsel::macos_fakes::Held> preferences;

} // namespace

const CFStringRef kCFPreferencesCurrentApplication = CFSTR("kCFPreferencesCurrentApplication");

CFPropertyListRef CFPreferencesCopyAppValue(CFStringRef key, CFStringRef domain) {
    const auto found = preferences.find({text(domain), text(key)});
    return found != preferences.end() ? CFRetain(found->second.get()) : nullptr;
}

void CFPreferencesSetAppValue(CFStringRef key, CFPropertyListRef value, CFStringRef domain) {
    preferences.insert_or_assign({text(domain), text(key)}, hopsel::macos_fakes::Held(value));
}

Boolean CFPreferencesAppSynchronize(CFStringRef) { return 1; }

namespace hopsel::macos_fakes {

void resetPreferences() { preferences.clear(); }

} // namespace hopsel::macos_fakes
