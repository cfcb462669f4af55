// What has to be said on one platform only, in Korean and in English, apart from the texts that all share.
#pragma once

#include <string>

namespace hopsel {

enum class PlatformNote {
    grabbedCombinations,  ///< what a window cannot see while it waits for a combination
    startsInLatin,        ///< of an input source: selecting it gives Latin letters at first
    passwordsUnknown,     ///< nobody tells where a password is typed
    passwordsPartlyKnown, ///< few programs tell
};

namespace l10n {
std::string note(PlatformNote note);
} // namespace l10n

} // namespace hopsel
