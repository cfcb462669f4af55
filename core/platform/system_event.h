// Sleep, lock and session changes: what can lose key-ups, and the seam that reports it.
//
// The observer is owned by start-up, which sets the callbacks before `start`. Callbacks come on the main
// thread and never after `stop` or after the observer is gone; they must not stop it.
#pragma once

#include <functional>

namespace hopsel {

enum class SystemEvent {
    willSleep,
    didWake,
    screenLocked,
    screenUnlocked,
    sessionResigned,
    sessionBecameActive,
};

class SystemEventObserving {
  public:
    SystemEventObserving() = default;
    SystemEventObserving(const SystemEventObserving&) = delete;
    SystemEventObserving& operator=(const SystemEventObserving&) = delete;
    virtual ~SystemEventObserving() = default;

    /// Starting twice registers nothing twice; starting after `stop` registers again.
    virtual void start() = 0;
    virtual void stop() = 0;

    std::function<void(SystemEvent)> onEvent;
    /// The set of enabled input sources changed.
    std::function<void()> onInputSourcesChanged;
};

} // namespace hopsel
