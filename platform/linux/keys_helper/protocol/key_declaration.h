// What a session wants to be asked about: its combinations, and what its modifier keys mean. The helper takes
// no more of it than the policy for triggers allows, so that a session cannot have it spell out what is
// typed.
//
// Plain values.
#pragma once

#include "core/keys/shortcut_key.h"
#include "platform/linux/keys_helper/protocol/told_keys.h"

#include <cstddef>
#include <vector>

namespace hopsel {

struct KeyDeclaration {
    /// Nobody has more rules than this; with more, combinations could stand for an alphabet several times
    /// over.
    static constexpr std::size_t maxCombinations = 32;

    told_keys::Meanings meanings = told_keys::plainMeanings();
    /// Empty: nothing is filtered, keys are only listened to.
    std::vector<ShortcutKey> combinations;

    /// Without the combinations and meanings that are not allowed, and without doubles. A meaning that is
    /// refused becomes that of the plain keyboard.
    KeyDeclaration permitted() const;

    friend bool operator==(const KeyDeclaration&, const KeyDeclaration&) = default;
};

} // namespace hopsel
