// Every text that people see, in the language of this process, and the names of keys.
//
// The texts themselves are in texts.def and added_texts.def; what another system calls by other names comes
// from its SystemWords. The language is chosen once, when the first text is asked for; the only state here.
#pragma once

#include "core/rules/rule.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace hopsel {

enum class L10nLanguage { ko, en };

namespace l10n {

enum class Key : std::uint8_t {
#define TEXT(key, korean, english) key,
#include "model/texts/added_texts.def"
#include "model/texts/texts.def"
#undef TEXT
};

/// In the order of the table.
const std::vector<Key>& allKeys();
/// The key's name: "menuQuit".
std::string_view rawValue(Key key);

/// Reads the user's language identifiers ("ko-KR"), the most wanted first.
using PreferredLanguages = std::function<std::vector<std::string>()>;
/// Set by start-up before the first text; without it the texts are English.
void setPreferredLanguages(PreferredLanguages reader);

L10nLanguage language();
/// For previews and tests; the application itself never changes its language.
void setLanguage(L10nLanguage language);
/// Only the first identifier counts: Korean, or else English.
L10nLanguage detect(const std::vector<std::string>& preferred);

std::string t(Key key);
/// Each "%@" of the text is replaced by the next argument.
std::string t(Key key, const std::vector<std::string>& arguments);

/// "오른쪽 ⌘", "Right ⌘"; "Right Super" where that is printed on the key.
std::string keyName(ModifierKey key);
/// Of a virtual key code: "Space", "A"; "Key 102" where there is no name.
std::string keyLabel(std::uint16_t keyCode);
/// "Left ⇧ + Space": control, option, shift, command (or the order of the system's words), left before right,
/// then the key.
std::string shortcutName(const ShortcutKey& key);
std::string triggerName(const Trigger& trigger);

} // namespace l10n
} // namespace hopsel
