// How Linux says what the table of texts says for macOS: keys by what is printed on them, the panel, the
// desktop's own settings.
//
// Start-up hands the layer to the texts. The rows are in linux_texts.def; names of keys follow the keymap,
// which is asked for on every look-up.
#pragma once

#include "model/texts/system_words.h"
#include "platform/linux/keys/printed_keys.h"

namespace hopsel {

/// What there is to be done about keys depends on where they come from.
enum class KeysFrom { xServer, gnomeExtension, keyHelper };

/// Without a reader, as on a keyboard with plain Alt and Ctrl keys.
l10n::SystemWords linuxWords(std::function<PrintedKeys()> printed = {},
                             KeysFrom keysFrom = KeysFrom::xServer);

} // namespace hopsel
