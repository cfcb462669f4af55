#include "platform/macos/desktop/interface_style.h"

#include "platform/macos/base/cf_values.h"
#include "platform/macos/desktop/property_lists.h"

#include <utility>

namespace hopsel {

// Neither the notification nor the preference is documented; both have been there since the dark appearance
// has.
InterfaceStyle::InterfaceStyle(std::function<void(bool isDark)> onChange)
    : onChange_(std::move(onChange)),
      changed_(CFSTR("AppleInterfaceThemeChangedNotification"), [this] { report(); }) {
    report();
}

// Light is the absence of the word "Dark".
void InterfaceStyle::report() {
    const auto style =
        property_lists::preference(CFSTR("AppleInterfaceStyle"), kCFPreferencesCurrentApplication);
    const bool isDark = cf_values::text(style.get()) == "Dark";
    if (std::exchange(reported_, isDark) != isDark) onChange_(isDark);
}

} // namespace hopsel
