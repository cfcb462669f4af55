// The engines of IBus as input sources: those among which the user switches, in their order.
//
// Made by start-up and owned by the session's catalog; needs the event loop. Everything is answered from
// memory, which the daemon's signals keep up to date; the daemon may be killed and started again at any time,
// also in the middle of a switch.
#pragma once

#include "core/platform/log.h"
#include "platform/linux/base/coalescing_timer.h"
#include "platform/linux/ibus/ibus_bus.h"
#include "platform/linux/ibus/ibus_engine.h"
#include "platform/linux/ibus/ibus_owner.h"
#include "platform/linux/ibus/ibus_settings.h"
#include "platform/linux/ibus/keyboard_layout.h"
#include "platform/linux/sources/input_framework.h"

#include <optional>
#include <string>
#include <vector>

namespace hopsel {

class IbusInputSources final : public InputFramework {
  public:
    /// `log` must outlive it.
    IbusInputSources(std::shared_ptr<BusLink> sessionBus, Log& log);

    /// Those that are set and installed.
    std::vector<InputSourceInfo> enabledKeyboardSources() override { return sources_; }
    std::optional<std::string> currentID() override;
    /// Text that is half composed stays: the daemon has the engine end it. `Failed` has a code of
    /// platform_errors.h.
    SelectResult select(const std::string& id) override;
    std::optional<SelectResult> refusal() const override { return refusal_; }
    bool hasBeenCurrent() const override { return hasBeenCurrent_; }

    /// False also where no engine is set: there is nothing that IBus could switch to.
    bool isInCharge() const override { return isInCharge_; }
    bool isAsking() const override {
        return !owner_.isKnown() || (owner_.isThere() && !(current_ && areEnginesTold_));
    }
    void retry() override;
    /// Storages of settings may not tell of changes.
    Retries retries() const override;
    const char* settingsProgram() const override { return "ibus-setup"; }

  private:
    void connect();
    void askForAll();
    void askForEngines();
    void askForCurrent();
    void takeEngines(const QDBusMessage& reply);
    void takeCurrent(const QString& engine);
    void refuse(const QDBusMessage& reply);
    void changeOwner();
    void giveUp();
    void forget();
    void describe();
    void updateInCharge();
    void applyLayout(const QString& engine);
    void reportSources();
    void reportSelected();

    std::vector<IbusEngine> engines_;
    bool areEnginesTold_ = false;
    bool reportedAsking_ = true;
    std::vector<InputSourceInfo> sources_;
    std::vector<InputSourceInfo> reportedSources_;
    std::optional<QString> current_; ///< absent until the daemon has told; empty: there is none
    std::optional<std::string> reportedID_;
    std::optional<QString> selecting_; ///< whose layout is still to be applied
    std::optional<SelectResult> refusal_;
    std::optional<QString> requested_; ///< by the last selection
    bool hasBeenCurrent_ = false;      ///< the requested one, since then
    unsigned unanswered_ = 0;          ///< selections that the daemon has not replied to
    bool isCurrentInDoubt_ = false;
    unsigned selectCount_ = 0;      ///< only the last selection can be refused
    unsigned enginesQuestions_ = 0; ///< answers to all but the last are out of date
    bool isInCharge_ = false;
    CoalescingTimer sourcesTimer_;
    CoalescingTimer selectedTimer_;
    KeyboardLayout layout_;
    IbusSettings settings_;
    IbusBus bus_;
    IbusOwner owner_;
};

} // namespace hopsel
