// The passive grabs by which the server hands us the keys of shortcuts, and nothing else.
//
// Owned by the hook, main thread; the server removes the grabs with the connection that made them. They are
// XInput 2 grabs on the root window, one for each key, lock state and master keyboard, and synchronous: the
// keyboard stands still from such a key-down until we have decided.
#pragma once

#include "core/keys/shortcut_key.h"
#include "platform/linux/keys/key_meanings.h"
#include "platform/linux/x11/x11_input_devices.h"

#include <bitset>
#include <map>
#include <string>
#include <vector>

namespace hopsel {

class X11KeyGrabs {
  public:
    /// `helper` is used to ask whether a core grab of someone else is in the way; both must outlive the
    /// grabs.
    X11KeyGrabs(X11Connection& connection, X11Connection& helper)
        : connection_(connection), helper_(helper) {}

    /// Replaces all grabs; those that are wanted already stay untouched. Throws `std::runtime_error`, naming
    /// the key, when another program holds one of the combinations; then nothing is grabbed at all.
    void install(const ShortcutSet& shortcuts, const KeyMeanings& meanings,
                 const std::vector<MasterKeyboard>& masters);
    void removeAll();

    /// A press of this key may come to us as a grab, depending on the modifiers.
    bool covers(XKeyCode key) const { return coveredKeys_[key]; }

  private:
    using Masks = std::set<XModifierMask>;
    using WantedKeys = std::map<XKeyCode, Masks>;

    /// The key of a combination that a client of the core protocol (most window managers) holds too, or an
    /// empty text. Which of the two would get it depends on who grabbed last.
    std::string contestedKey(const WantedKeys& wanted);
    /// The key that could not be grabbed, or an empty text.
    std::string grabAll();
    bool grab(XKeyCode key, const Masks& masks, XDeviceId keyboard);

    X11Connection& connection_;
    X11Connection& helper_;
    WantedKeys wanted_;
    std::vector<MasterKeyboard> masters_;
    std::bitset<256> coveredKeys_;
};

} // namespace hopsel
