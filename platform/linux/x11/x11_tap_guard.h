// Keeps launchers and menu bars from acting on the lone tap of a trigger.
//
// A desktop opens its launcher when Super comes up and nothing else was pressed meanwhile, and programs move
// the focus to their menu bar with Alt: the letters after a switch would go there. So, while such a trigger
// is down alone, a key on which nobody acts is tapped. The hook knows it for ours when it comes back, and the
// engine takes no notice of it. Owned by the listening source; the hook outlives it.
#pragma once

#include "platform/linux/x11/x11_key_hook.h"

#include <QString>

namespace hopsel {

class X11TapGuard {
  public:
    enum class Key {
        silent,  ///< one without a symbol, which every other desktop takes for a key
        control, ///< for Cinnamon, which looks at symbols
    };
    /// For a desktop as XDG_CURRENT_DESKTOP names it, a list with colons.
    static Key keyFor(const QString& desktop);

    X11TapGuard(X11KeyHook& hook, Key key) : hook_(hook), key_(key) {}

    void setTriggers(ModifierSet triggers) { triggers_ = triggers; }
    /// A modifier went down, by the user's hand, and the engine has been told.
    void modifierDown(const RawEvent& event);

  private:
    std::optional<std::uint16_t> linuxCode() const;

    X11KeyHook& hook_;
    Key key_;
    ModifierSet triggers_;
};

} // namespace hopsel
