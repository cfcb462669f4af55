// The input methods of a running Fcitx5 as input sources.
//
// Owned by the session's catalog. It learns and asks through the event loop; while the bus is lost, there is
// no Fcitx5.
#pragma once

#include "platform/linux/base/coalescing_timer.h"
#include "platform/linux/fcitx/fcitx_current_method.h"
#include "platform/linux/fcitx/fcitx_daemon.h"
#include "platform/linux/fcitx/fcitx_profile_watch.h"
#include "platform/linux/fcitx/fcitx_selection.h"
#include "platform/linux/fcitx/fcitx_signals.h"
#include "platform/linux/fcitx/fcitx_source_list.h"
#include "platform/linux/sources/input_framework.h"

#include <memory>

namespace hopsel {

class FcitxInputSources final : public InputFramework {
  public:
    explicit FcitxInputSources(std::shared_ptr<BusLink> sessionBus);

    bool isInCharge() const override;
    bool isAsking() const override {
        return !daemon_.isOwnerKnown() || (!daemon_.owner().isEmpty() && !list_.isTold());
    }
    void retry() override;
    /// Fcitx5 has no signal for its current method.
    Retries retries() const override;
    const char* settingsProgram() const override { return "fcitx5-configtool"; }
    void askCurrent() override {
        if (!daemon_.owner().isEmpty()) current_.ask();
    }

    /// Empty while Fcitx5 is not in charge.
    std::vector<InputSourceInfo> enabledKeyboardSources() override { return list_.sources(); }
    /// As read last: right after a switch, where Fcitx5 shows the method in a panel and as a modifier key
    /// goes down, else up to two seconds ago, or when the user last did something. Absent while no text field
    /// has Fcitx5's attention.
    std::optional<std::string> currentID() override;
    /// `Failed`, here and in `refusal`, has a code of platform_errors.h.
    SelectResult select(const std::string& id) override;
    std::optional<SelectResult> refusal() const override;
    bool hasBeenCurrent() const override { return selection_ && selection_->hasBeenCurrent(); }

  private:
    void takeOwner();
    void ask();
    void takeCurrent();
    void report();

    FcitxDaemon daemon_;
    FcitxSourceList list_;
    FcitxCurrentMethod current_;
    FcitxProfileWatch profile_;
    std::unique_ptr<FcitxSignals> signals_;     ///< while there is a Fcitx5
    std::unique_ptr<FcitxSelection> selection_; ///< the last one that Fcitx5 was asked for
    bool isSelectionLost_ = false;              ///< Fcitx5 went away since then

    bool reportedInCharge_ = false;
    bool reportedAsking_ = true;
    std::vector<InputSourceInfo> reportedSources_;
    std::optional<std::string> reportedID_;
    CoalescingTimer reportTimer_;
};

} // namespace hopsel
