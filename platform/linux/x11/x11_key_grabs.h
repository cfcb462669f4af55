// The passive grabs by which the server hands us the keys of shortcuts, and nothing else.
//
// Owned by the hook; the server removes the grabs with the connection that made them. They are
// XInput 2 grabs on the root window, one for each key, lock state and master keyboard, and synchronous: the
// keyboard stands still from such a key-down until we have decided.
#pragma once

#include "core/keys/shortcut_key.h"
#include "platform/linux/keys/key_meanings.h"
#include "platform/linux/x11/x11_input_devices.h"

#include <bitset>
#include <map>
#include <vector>

namespace hopsel {

class X11KeyGrabs {
  public:
    /// `helper` is used to ask whether a core grab of someone else is in the way; both must outlive the
    /// grabs.
    X11KeyGrabs(X11Connection& connection, X11Connection& helper)
        : connection_(connection), helper_(helper) {}

    /// Makes the grabs those of the shortcuts; what is held already stays untouched. Each shortcut goes by
    /// itself: the answer has those of which another program holds a combination, and nothing is grabbed for
    /// them.
    ShortcutSet install(const ShortcutSet& shortcuts, const KeyMeanings& meanings,
                        const std::vector<MasterKeyboard>& masters);
    void removeAll();

    /// A press of this key may come to us as a grab, depending on the modifiers.
    bool covers(XKeyCode key) const { return coveredKeys_[key]; }

  private:
    using Masks = std::set<XModifierMask>;
    using Combinations = std::map<XKeyCode, Masks>;

    /// What a client of the core protocol (most window managers) holds, too. Which of the two would get it
    /// depends on who grabbed last.
    Combinations contested(const Combinations& wanted);
    /// Those that were refused.
    Combinations hold(const Combinations& wanted);
    Masks grab(XKeyCode key, const Masks& masks, XDeviceId keyboard);
    void letGo(const Combinations& unwanted);

    X11Connection& connection_;
    X11Connection& helper_;
    Combinations held_;
    std::vector<MasterKeyboard> masters_;
    std::bitset<256> coveredKeys_;
};

} // namespace hopsel
