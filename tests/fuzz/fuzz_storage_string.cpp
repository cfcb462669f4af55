// A text that names a key names it for good: its canonical form means the same key and is its own canonical
// form.
#include "core/keys/shortcut_key.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto key =
        hopsel::ShortcutKey::fromStorageString(std::string_view(reinterpret_cast<const char*>(data), size));
    if (!key) return 0;
    const std::string text = key->storageString();
    const auto again = hopsel::ShortcutKey::fromStorageString(text);
    if (again != key || again->storageString() != text) std::abort();
    return 0;
}
