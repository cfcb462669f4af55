// GNOME's input sources where its shell does not have our extension: they can be listed but not switched.
//
// GNOME's shell is the only one that switches them. It offers other programs no call for it, ignores what is
// written to its settings' `current`, and applies its own choice again at the next change of focus when
// another program makes an IBus engine the current one. So every request is refused, plainly, and the sources
// are told to be not select-capable; unless keys depend on the same extension: then rules are made
// beforehand, and nobody is told that they work.
//
// The current source is the first of the settings' `mru-sources` that is still in the list: the shell writes
// them at each switch of the user's and, when the list changes, itself goes to the first one that is left. It
// keeps no such record when each window has its own source; then the current one is not known. While a
// password is typed the shell puts IBus sources aside without a record, and the one before is told.
//
// Made by start-up, owned by the session's catalog; needs the event loop.
#pragma once

#include "platform/linux/base/coalescing_timer.h"
#include "platform/linux/bus/bus_name.h"
#include "platform/linux/desktops/gnome_settings.h"
#include "platform/linux/desktops/remembered_framework.h"

namespace hopsel {

class GnomeSources final : public RememberedFramework {
  public:
    enum class Rules {
        useless,    ///< they would fire, and switch nothing
        beforehand, ///< they fire once the extension is there, which then switches as well
    };
    explicit GnomeSources(std::shared_ptr<BusLink> sessionBus, Rules rules = Rules::useless);

    bool canSwitch() const override { return false; }
    /// `NotFound` or `Failed`.
    SelectResult select(const std::string& id) override;
    /// Also reads the settings again, for storages that do not tell of changes.
    void retry() override;
    Retries retries() const override { return shell_.isOwned() ? Retries::whileUsed : Retries::never; }

  private:
    void followOwner();
    void settingsChanged(const QString& path);
    void read();

    Rules rules_;
    GnomeSettings settings_;
    std::optional<GnomeSettings::Values> told_;
    CoalescingTimer refresh_;
    std::unique_ptr<BusSubscription> changes_; ///< while there is a shell
    BusName shell_;
};

} // namespace hopsel
