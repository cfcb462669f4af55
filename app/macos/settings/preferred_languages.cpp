#include "app/macos/settings/preferred_languages.h"

#include "core/platform/macos/cf_values.h"

#include <CoreFoundation/CFLocale.h>

namespace hopsel {

std::vector<std::string> preferredLanguages() {
    return cf_values::texts(CfRef<CFArrayRef>::adopt(CFLocaleCopyPreferredLanguages()).get());
}

} // namespace hopsel
