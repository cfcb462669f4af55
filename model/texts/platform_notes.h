// What has to be said on one platform only, in Korean and in English, apart from the texts that all share.
#pragma once

#include "core/platform/input_source.h"

#include <optional>
#include <string>

namespace hopsel {

enum class PlatformNote {
    grabbedCombinations,  ///< what a window cannot see while it waits for a combination
    startsInLatin,        ///< of an input source: selecting it gives Latin letters at first
    startsInLatinByFile,  ///< the same, where only a file of Mozc's changes it
    typesLatinFirst,      ///< of a rule with such a source, in few words
    passwordsUnknown,     ///< nobody tells where a password is typed
    passwordsPartlyKnown, ///< few programs tell
};

namespace l10n {
std::string note(PlatformNote note);
/// What a button says that has a source begin in its own script; once that is done, as before.
std::string startOfferText(const std::string& sourceName, bool isDone);
/// What should be known of a source and what to do about it; absent where there is nothing to say.
std::optional<std::string> limitNote(SourceLimit limit);
} // namespace l10n

} // namespace hopsel
