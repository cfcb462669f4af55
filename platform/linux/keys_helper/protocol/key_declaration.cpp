#include "platform/linux/keys_helper/protocol/key_declaration.h"

#include "core/keys/shortcut_policy.h"

#include <algorithm>

namespace hopsel {

KeyDeclaration KeyDeclaration::permitted() const {
    KeyDeclaration allowed;
    for (std::size_t index = 0; index < told_keys::count; ++index) {
        const auto& meaning = meanings.at(index);
        if (!meaning || told_keys::mayCountAs(index, *meaning)) allowed.meanings.at(index) = meaning;
    }
    for (const ShortcutKey& combination : combinations) {
        if (allowed.combinations.size() == maxCombinations) break;
        const auto& taken = allowed.combinations;
        if (!shortcut_policy::isAllowed(combination)) continue;
        if (std::find(taken.begin(), taken.end(), combination) != taken.end()) continue;
        allowed.combinations.push_back(combination);
    }
    return allowed;
}

} // namespace hopsel
