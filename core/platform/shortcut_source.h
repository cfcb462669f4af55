// The seam of the filtering source: it sees key-downs and key-ups and can swallow them.
//
// Implemented once per platform and by a recording fake in the tests. The engine holds one, installs the
// callbacks at construction and is the only caller. A swallowed event must not reach the listening source as
// well: the engine feeds it back itself.
#pragma once

#include "core/keys/shortcut_key.h"

#include <functional>

namespace hopsel {

class ShortcutSource {
  public:
    /// Returns true to swallow the event. Must be quick: the platform holds the keyboard until it returns.
    using InputHandler = std::function<bool(const ShortcutInput&)>;
    using DisabledHandler = std::function<void(bool reenabled)>;

    ShortcutSource() = default;
    ShortcutSource(const ShortcutSource&) = delete;
    ShortcutSource& operator=(const ShortcutSource&) = delete;
    /// Releasing a source stops it.
    virtual ~ShortcutSource() = default;

    /// Throws `TapFailure` (tap_failure.h) when the platform refuses. Starting a started source does nothing.
    virtual void start() = 0;
    /// Stopping a stopped source does nothing. Does not throw.
    virtual void stop() = 0;

    /// The combinations that may be swallowed, told before `start` and whenever they change. Platforms that
    /// must name the keys they filter need it; sources that see every key ignore it. A set that cannot be
    /// taken while the source runs is reported through `onDisabled(false)`. Does not throw.
    virtual void setShortcuts(const ShortcutSet& shortcuts) = 0;

    /// From now on every key would be let through if it were asked about, or no longer: sources that decide
    /// before they can ask swallow none. Sources that ask ignore it. Does not throw.
    virtual void setStandsAside(bool /*standsAside*/) {}

    /// Those of the combinations told that another program holds, as far as they were tried for: the others
    /// work, these as soon as they are free. Sources that see every key have none.
    virtual ShortcutSet unavailableShortcuts() const { return {}; }

    /// Without a handler every key passes.
    InputHandler onInput;
    /// The platform took the source away, with or without giving it back. Without a handler nobody is told.
    DisabledHandler onDisabled;
    /// `unavailableShortcuts` may have changed.
    std::function<void()> onUnavailableChanged;
};

} // namespace hopsel
