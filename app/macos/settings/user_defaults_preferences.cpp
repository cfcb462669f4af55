#include "app/macos/settings/user_defaults_preferences.h"

#include "app/macos/settings/property_lists.h"
#include "core/platform/macos/cf_values.h"

namespace hopsel {

bool UserDefaultsPreferences::read(CFStringRef key, bool byDefault) const {
    const auto value = property_lists::preference(key, domain_);
    if (const auto number = property_lists::number(value.get())) return *number != 0;
    // "defaults write" without a type leaves a text.
    const auto text = cf_values::text(value.get());
    if (text == "1" || text == "true" || text == "YES") return true;
    if (text == "0" || text == "false" || text == "NO") return false;
    return byDefault;
}

void UserDefaultsPreferences::write(CFStringRef key, bool on) {
    CFPreferencesSetAppValue(key, on ? kCFBooleanTrue : kCFBooleanFalse, domain_);
    CFPreferencesAppSynchronize(domain_);
}

} // namespace hopsel
