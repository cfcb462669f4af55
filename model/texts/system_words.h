// What one system says differently from the table of texts: a layer over it.
//
// The table is written for macOS and stands as it is. A platform whose keys and places have other names hands
// in a layer when the program starts; without one the table speaks. It is read on every look-up, so a layer
// may follow what changes (the keymap). Kept for the rest of the process.
#pragma once

#include "model/texts/l10n.h"

namespace hopsel::l10n {

struct SystemWords {
    /// Null where the table's text is right. As many "%@" as the table's.
    std::function<const char*(Key, L10nLanguage)> text;
    /// Empty where the table's name is right.
    std::function<std::string(ModifierKey, L10nLanguage)> keyName;
    /// Likewise, of a virtual key code.
    std::function<std::string(std::uint16_t, L10nLanguage)> keyLabel;
    /// In which the keys of a combination are named.
    std::vector<ModifierFamily> order{ModifierFamily::control, ModifierFamily::option, ModifierFamily::shift,
                                      ModifierFamily::command};
    /// With these keys a user pastes.
    std::string pasteKeys = "⌘V";
    /// Is the list of recorded events shown in the user's language, and not in the report's?
    bool translatesEvents = false;
};

const SystemWords& systemWords();
/// Once at the start; tests take it back with `{}`.
void setSystemWords(SystemWords words);

} // namespace hopsel::l10n
