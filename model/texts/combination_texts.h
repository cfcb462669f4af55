// What is said about key combinations beyond the table: who holds them, and why a key will not do. Pure but
// for the language.
#pragma once

#include "core/keys/shortcut_key.h"
#include "core/platform/local_key_monitoring.h"

#include <string>
#include <vector>

namespace hopsel::l10n {

/// "⚠ Print is taken by another program"; of several combinations, all.
std::string takenText(const std::vector<std::string>& names);
/// On the button that leads from a taken combination to another one.
std::string chooseAnotherText();
/// The title of the sheet in which a rule gets another key, and its button.
std::string changeKeyText();
std::string changeText();
/// Why nothing was captured.
std::string refusedText(UnusableKey key);
/// That programs will miss the combination; empty where they hardly will.
std::string missedByPrograms(const ShortcutKey& key);

} // namespace hopsel::l10n
