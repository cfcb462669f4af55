// The input sources of a Linux session: those of the first framework in charge.
//
// Frameworks come, go and follow one another while the session lasts. Which of them answers is decided when
// one tells that it is in charge, or no longer; from then on every answer is the new one's, and both changes
// are reported once, in the next turn of the event loop. What the others tell is not handed on. Before any of
// them knows, and where there is none, the fallback answers.
//
// Made by start-up, which fixes the frameworks' order, and shared with the input-source service. Owns the
// frameworks.
#pragma once

#include "platform/linux/sources/input_framework.h"
#include "platform/linux/sources/source_limits.h"

#include <QTimer>
#include <functional>
#include <memory>
#include <vector>

namespace hopsel {

class LinuxInputSources final : public InputSourceCatalog {
  public:
    /// The first framework goes before the others. Without a fallback there may be no sources at all. Takes
    /// the callbacks of all of them for itself, and that of the limits, which it adds to what is listed.
    LinuxInputSources(std::vector<std::unique_ptr<InputFramework>> frameworks,
                      std::shared_ptr<InputSourceCatalog> fallback,
                      std::shared_ptr<SourceLimits> limits = nullptr);
    ~LinuxInputSources() override;

    std::vector<InputSourceInfo> enabledKeyboardSources() override;
    /// While one that would go before the one in charge is being asked, but not for ever: a daemon that hangs
    /// keeps nobody waiting.
    bool isAsking() const override { return isAsked_ && patience_.isActive(); }
    std::optional<std::string> currentID() override;
    SelectResult select(const std::string& id) override;
    SwitchHindrance hindrance(std::int32_t code) const override;
    /// `Failed` with `frameworkGone` once another is in charge than the one that accepted the request.
    std::optional<SelectResult> refusal() const override;
    bool hasBeenCurrent() const override;
    bool canSetStart(const std::string& id) const override { return limits_ && limits_->canSetStart(id); }
    void setStartsInOwnScript(const std::string& id, bool inOwnScript) override {
        if (limits_) limits_->setStartsInOwnScript(id, inOwnScript);
    }

    /// For every framework: see there.
    void retry();
    bool needsRetry() const;
    /// The user does something: for the next ten seconds what no signal tells may change.
    void noteUse() { roundsLeft_ = roundsAfterUse; }
    /// For the one in charge: see there.
    void askCurrent();
    /// Null while the fallback answers.
    const InputFramework* inCharge() const { return inCharge_; }
    bool canSwitch() const { return inCharge_ == nullptr || inCharge_->canSwitch(); }
    /// `inCharge` is another; at once, from the event loop.
    std::function<void()> onInChargeChanged;

  private:
    InputFramework* firstInCharge() const;
    InputSourceCatalog* answering() const;
    void decide();
    bool isAnyAsked() const;
    InputFramework::Retries retries() const;
    void noteAsking();
    void handOn(const InputSourceCatalog* from, const std::function<void()>& change) const;
    void announce() const;

    std::vector<std::unique_ptr<InputFramework>> frameworks_;
    std::shared_ptr<InputSourceCatalog> fallback_;
    std::shared_ptr<SourceLimits> limits_;
    InputFramework* inCharge_ = nullptr;
    bool hasRequest_ = false; ///< accepted by the one in charge since it came
    bool isRequestLost_ = false;
    bool isAsked_ = false; ///< one of those that `isAsking` speaks of, however long
    static constexpr int roundsAfterUse = 5;
    int roundsLeft_ = roundsAfterUse; ///< of `retry`
    QTimer patience_;                 ///< runs while that is worth waiting for
    QTimer announcement_;
};

} // namespace hopsel
