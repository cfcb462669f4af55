#include "platform/macos/desktop/preferred_languages.h"

#include "platform/macos/base/cf_values.h"

#include <CoreFoundation/CFLocale.h>

namespace hopsel {

std::vector<std::string> preferredLanguages() {
    return cf_values::texts(CfRef<CFArrayRef>::adopt(CFLocaleCopyPreferredLanguages()).get());
}

} // namespace hopsel
