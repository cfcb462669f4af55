// Decides which key events of the filtering source belong to a shortcut and are swallowed.
//
// Owned by the engine and replaced whenever the rules change. Its state is the keys whose
// key-down was swallowed: their repeats and their key-up are swallowed too, and nothing else is.
#pragma once

#include "core/keys/shortcut_key.h"

#include <optional>
#include <vector>

namespace hopsel {

struct ShortcutDecision {
    bool consume = false;            ///< swallow the event
    std::optional<ShortcutKey> fire; ///< the shortcut completed by this event; on the first key-down only

    static ShortcutDecision passThrough() { return {}; }
    friend bool operator==(const ShortcutDecision&, const ShortcutDecision&) = default;
};

class ShortcutMatcher {
  public:
    explicit ShortcutMatcher(ShortcutSet shortcuts = {}) : shortcuts_(std::move(shortcuts)) {}

    /// Matching is exact: one modifier more or less, or on the other side, is another combination.
    /// Does not look at `synthetic`.
    ShortcutDecision handle(const ShortcutInput& input);

    /// Forgets the swallowed keys: the key-up of a key held now will pass.
    void reset() { consumed_.clear(); }

    const ShortcutSet& shortcuts() const { return shortcuts_; }

  private:
    bool eraseConsumed(std::uint16_t keyCode);

    ShortcutSet shortcuts_;
    std::vector<std::uint16_t> consumed_; // a handful at most: fingers
};

} // namespace hopsel
