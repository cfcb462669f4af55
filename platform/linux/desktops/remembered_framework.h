// What the desktops' frameworks have in common: they answer from what they were told last.
//
// The base of each of them. It compares what is told with what was told before, so that only real changes are
// reported.
#pragma once

#include "platform/linux/sources/input_framework.h"

namespace hopsel {

class RememberedFramework : public InputFramework {
  public:
    std::vector<InputSourceInfo> enabledKeyboardSources() override { return state_.sources; }
    std::optional<std::string> currentID() override { return state_.currentID; }
    std::optional<SelectResult> refusal() const override { return refusal_; }
    bool isInCharge() const override { return state_.isInCharge; }
    bool hasBeenCurrent() const override { return hasBeenCurrent_; }

  protected:
    struct State {
        bool isInCharge = false;
        std::vector<InputSourceInfo> sources;
        std::optional<std::string> currentID;
    };
    const State& state() const { return state_; }
    /// From the event loop only. Whoever is told may ask and select at once.
    void remember(State next);
    /// The daemon has gone, or answers no longer.
    void forget(SelectResult reason);

    /// A request for this source goes out.
    void accept(const std::string& id);
    void refuse(SelectResult reason) { refusal_ = reason; }

  private:
    State state_;
    std::optional<SelectResult> refusal_;
    std::optional<std::string> requestedID_;
    bool hasBeenCurrent_ = false;
};

} // namespace hopsel
