// The keys that the desktop itself binds to switching input sources, for the warning that a shortcut trigger
// is one of them and both would act.
//
// Owned by start-up; needs the event loop, to know which programs run in the session. It is asked for every
// rule whenever the rules are drawn, and always answers from the settings as they are.
#pragma once

#include "core/keys/shortcut_key.h"
#include "platform/linux/bus/bus_name.h"

#include <functional>
#include <vector>

namespace hopsel {

class DesktopSwitchKeys {
  public:
    using Reader = std::function<std::vector<ShortcutKey>()>;
    /// What each of them has bound, whether it runs or not.
    struct Readers {
        Reader fcitx;
        Reader ibus;
        Reader gnome;
        Reader xServer;
    };
    /// The user's own settings. Nothing is opened or read before the first question.
    static Readers liveReaders();

    DesktopSwitchKeys(const std::shared_ptr<BusLink>& sessionBus, Readers readers);

    /// What is bound by the programs that are in charge now, with left modifier keys.
    std::vector<ShortcutKey> bound() const;

    /// Sides do not matter.
    bool conflicts(const ShortcutKey& key) const;

  private:
    BusName fcitx_;
    BusName ibus_;
    BusName gnome_;
    Readers readers_;
};

} // namespace hopsel
