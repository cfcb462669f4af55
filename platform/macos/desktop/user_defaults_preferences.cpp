#include "platform/macos/desktop/user_defaults_preferences.h"

#include "platform/macos/base/cf_values.h"
#include "platform/macos/desktop/property_lists.h"

namespace hopsel {

bool UserDefaultsPreferences::read(CFStringRef key, bool byDefault) const {
    const auto value = property_lists::preference(key, domain_);
    if (const auto number = property_lists::number(value.get())) return *number != 0;
    if (!value) return byDefault;
    // "defaults write" without a type leaves a text; anything else that is no truth value counts as false.
    std::string text = cf_values::text(value.get()).value_or("");
    for (char& letter : text) {
        if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
    }
    return text == "1" || text == "true" || text == "yes";
}

void UserDefaultsPreferences::write(CFStringRef key, bool on) {
    CFPreferencesSetAppValue(key, on ? kCFBooleanTrue : kCFBooleanFalse, domain_);
    CFPreferencesAppSynchronize(domain_);
}

} // namespace hopsel
