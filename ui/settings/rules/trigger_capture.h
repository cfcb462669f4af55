// Asks the user to press the trigger of a rule: a modifier tapped alone comes from the engine, a combination
// from the keys that reach our own windows, and whichever is first ends it.
//
// Owned by the sheet that adds a rule; no widgets. The engine holds it weakly. When it goes, the engine is
// out of capture and no key is monitored.
#pragma once

#include "model/app_model.h"
#include "ui/settings/rules/shortcut_capture_monitor.h"

#include <QObject>
#include <chrono>

namespace hopsel {

class TriggerCapture final : public QObject {
  public:
    enum class State {
        idle,
        capturing,
        unavailable, ///< idle: the engine is not running
        timedOut,    ///< idle: nothing was pressed in time
    };

    TriggerCapture(AppModel& model, std::shared_ptr<LocalKeyMonitoring> keys, std::optional<Trigger> initial);
    ~TriggerCapture() override;

    /// Starts afresh when one is under way.
    void start();
    /// Leaves the trigger as it was.
    void cancel();

    State state() const { return state_; }
    bool isCapturing() const { return state_ == State::capturing; }
    bool missesGrabbedKeys() const { return monitor_.missesGrabbedKeys(); }
    const std::optional<Trigger>& trigger() const { return trigger_; }
    /// What was pressed last in this capture and cannot be a trigger; it goes on.
    std::optional<UnusableKey> refused() const { return refused_; }

    /// How long the next capture waits.
    void setTimeout(std::chrono::milliseconds timeout) { timeout_ = timeout; }

    /// State or trigger changed.
    std::function<void()> onChange;

  private:
    void captured(const Trigger& trigger);
    void end(State state);

    AppModel& model_;
    ShortcutCaptureMonitor monitor_;
    std::optional<Trigger> trigger_;
    std::optional<UnusableKey> refused_;
    State state_ = State::idle;
    std::chrono::milliseconds timeout_ = std::chrono::seconds(15);
    int token_ = 0; ///< of the latest capture: an earlier one's timer must not end it
};

} // namespace hopsel
