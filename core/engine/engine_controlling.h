// What the application needs of the engine. The coordinator implements it; previews and tests have their own.
#pragma once

#include "core/events/engine_event.h"
#include "core/platform/remote_apps.h"
#include "core/platform/system_event.h"
#include "core/rules/rule.h"

#include <functional>
#include <memory>
#include <optional>

namespace hopsel {

class DiagnosticsRecorder;

class EngineControlling {
  public:
    using EventObserver = std::function<void(const EngineEvent&)>;
    using CaptureHandler = std::function<void(ModifierKey)>;

    EngineControlling() = default;
    EngineControlling(const EngineControlling&) = delete;
    EngineControlling& operator=(const EngineControlling&) = delete;
    virtual ~EngineControlling() = default;

    virtual EngineState state() const = 0;
    virtual ShortcutStatus shortcutStatus() const = 0;
    /// The combinations that another program holds, while there are any to filter; the others work.
    virtual ShortcutSet unavailableShortcuts() const { return {}; }
    /// Called, synchronously, when they may have changed; an empty function takes it away.
    virtual void setOnUnavailableShortcuts(std::function<void()> /*observer*/) {}
    /// The one observer of engine events, called synchronously; an empty function takes it away.
    virtual void setOnEvent(EventObserver observer) = 0;
    /// True also past the deadline, until the next event or a cancel notices it.
    virtual bool isCapturing() const = 0;
    /// The recorder that is told of keys and engine events; null for none.
    virtual std::shared_ptr<DiagnosticsRecorder> diagnostics() const = 0;
    virtual void setDiagnostics(std::shared_ptr<DiagnosticsRecorder> recorder) = 0;
    /// The kind of the application in front, if it shows another computer.
    virtual std::optional<remote_apps::Kind> frontmostRemoteKind() const = 0;
    virtual void setFrontmostRemoteKind(std::optional<remote_apps::Kind> kind) = 0;
    virtual ShortcutKey guestKey() const = 0;
    virtual void setGuestKey(ShortcutKey key) = 0;
    /// Whether this platform can keep launchers and menu bars from acting on a trigger's lone tap.
    virtual bool canGuardTaps() const { return false; }
    /// False while it runs for combinations alone; another state comes before it changes.
    virtual bool hearsTaps() const { return true; }
    /// By default it does where it can.
    virtual void setGuardsTaps(bool /*on*/) {}
    /// Does not fail: the outcome is the state, running or degraded. Does nothing while running; called again
    /// while degraded, it is the retry.
    virtual void start() = 0;
    /// Resets, also when stopped already. An open capture ends, its handler uncalled.
    virtual void stop() = 0;
    /// Takes the rules and the list of sources, and resets. Allowed while stopped.
    virtual void apply(const Config& config) = 0;
    /// Reads again which sources can be selected; called when the platform's set of them changed.
    virtual void refreshSources() = 0;
    /// Does what the rule says as if its trigger had been pressed; the rule need not be one of those applied.
    /// What comes of it is told by events with the rule's identifier. Needs no key to be heard; false, and
    /// nothing, while stopped.
    virtual bool request(const Rule& /*rule*/) { return false; }
    /// Starts the filtering source again if it is unavailable.
    virtual void retryShortcutIfNeeded() = 0;
    /// Resets, in every state: any of these events may have lost a key-up.
    virtual void handle(SystemEvent event) = 0;
    /// The next tapped modifier goes to the handler instead of firing rules, for 15 seconds at most. Drops
    /// the switches that wait, and the handler of an earlier capture, uncalled. The handler is called once at
    /// most and may begin the next capture.
    virtual void beginTriggerCapture(CaptureHandler handler) = 0;
    /// Ends the capture, its handler uncalled; does nothing when there is none.
    virtual void cancelTriggerCapture() = 0;
};

} // namespace hopsel
