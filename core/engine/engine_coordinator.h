// The engine: takes the events of the two sources, decides, and switches input sources.
//
// One instance per process, owned by start-up, no locks. It reaches the platform only
// through the interfaces, the clock and the scheduler handed to it, so the whole engine runs without the
// platform. The callbacks it installs in its sources hold it weakly. Re-entrancy is expected: while a switch
// is verified or a guest key is sent the event loop runs. Triggers that complete then only append to the
// queue; everything else takes effect at once, also an `apply`, a reset or a stop.
//
// The class is written in three files: engine_pipeline.cpp (events in, decisions), engine_lifecycle.cpp
// (states, recovery, rules) and engine_switching.cpp (the queue, and the switch itself).
#pragma once

#include "core/diagnostics/diagnostics_recorder.h"
#include "core/engine/engine_controlling.h"
#include "core/engine/switch_planner.h"
#include "core/keys/event_normalizer.h"
#include "core/keys/key_state_machine.h"
#include "core/keys/shortcut_matcher.h"
#include "core/platform/event_source.h"
#include "core/platform/guest_key.h"
#include "core/platform/input_source_service.h"
#include "core/platform/secure_input.h"
#include "core/platform/shortcut_source.h"

#include <deque>
#include <set>
#include <unordered_map>

namespace hopsel {

class EngineCoordinator final : public EngineControlling,
                                public std::enable_shared_from_this<EngineCoordinator> {
  public:
    /// Seconds of system uptime: the clock that also stamps raw events.
    using Clock = std::function<double()>;
    /// Runs the given function on a later turn of the main loop.
    using Scheduler = std::function<void(std::function<void()>)>;

    /// What the engine is built from. All are required but `shortcutSource`, without which there are no
    /// shortcuts, and `guestKeySender`, without which no guest gets the guest key.
    struct Parts {
        std::shared_ptr<EventSource> source;
        std::shared_ptr<ShortcutSource> shortcutSource;
        std::shared_ptr<InputSourceService> service;
        std::shared_ptr<SecureInputProviding> secureInput;
        std::shared_ptr<GuestKeySending> guestKeySender;
        double tapMax = 0.5; ///< the longest press that is a tap, in seconds
        Clock clock;
        Scheduler schedule;
    };

    static constexpr double captureTimeout = 15.0; ///< seconds

    /// Starts nothing: the engine is stopped until `start`.
    static std::shared_ptr<EngineCoordinator> create(Parts parts);

    EngineState state() const override { return state_; }
    ShortcutStatus shortcutStatus() const override { return shortcutStatus_; }
    ShortcutSet unavailableShortcuts() const override;
    void setOnUnavailableShortcuts(std::function<void()> observer) override {
        onUnavailableShortcuts_ = std::move(observer);
    }
    void setOnEvent(EventObserver observer) override { onEvent_ = std::move(observer); }
    bool isCapturing() const override { return static_cast<bool>(captureHandler_); }
    std::shared_ptr<DiagnosticsRecorder> diagnostics() const override { return diagnostics_; }
    void setDiagnostics(std::shared_ptr<DiagnosticsRecorder> recorder) override {
        diagnostics_ = std::move(recorder);
    }
    std::optional<remote_apps::Kind> frontmostRemoteKind() const override { return frontmostRemoteKind_; }
    void setFrontmostRemoteKind(std::optional<remote_apps::Kind> kind) override;
    ShortcutKey guestKey() const override { return guestKey_; }
    void setGuestKey(ShortcutKey key) override { guestKey_ = key; }

    bool canGuardTaps() const override { return source_->canGuardTaps(); }
    bool hearsTaps() const override { return source_->hearsTaps(); }
    void setGuardsTaps(bool on) override;

    bool isRemoteAppFrontmost() const { return frontmostRemoteKind_.has_value(); }
    /// True keeps the kind that is set, or makes it a remote screen; false clears it.
    void setRemoteAppFrontmost(bool remote);
    /// Off: guest systems are left alone like remote screens.
    bool guestKeyEnabled() const { return guestKeyEnabled_; }
    void setGuestKeyEnabled(bool enabled);
    /// Off: rules switch locally whatever application is in front, and no guest key is sent.
    bool skipsLocalSwitchInRemoteApps() const { return skipsLocalSwitchInRemoteApps_; }
    void setSkipsLocalSwitchInRemoteApps(bool skips);

    void start() override;
    void stop() override;
    void apply(const Config& config) override;
    void refreshSources() override;
    bool request(const Rule& rule) override;
    void retryShortcutIfNeeded() override;
    void handle(SystemEvent event) override;
    void beginTriggerCapture(CaptureHandler handler) override;
    /// `timeout` in seconds, looked at when an event arrives; there is no timer.
    void beginTriggerCapture(double timeout, CaptureHandler handler);
    void cancelTriggerCapture() override;

  private:
    /// What the application in front leaves of a trigger.
    enum class RemoteGate { switchesLocally, sendsGuestKey, standsAside };

    explicit EngineCoordinator(Parts parts);
    void connectSources();

    // engine_pipeline.cpp
    void process(const RawEvent& raw);
    bool processShortcut(const ShortcutInput& input);
    bool captureEvent(const KeyEvent& event);
    bool noteSecureInput(const KeyEventKind& kind);
    void act(const Decision& decision, const KeyEvent& event);
    void recordKey(const KeyEvent& event, KeyVerdict verdict);
    void swallow(const ShortcutInput& input, KeyVerdict verdict);
    void refeed(RawEventType type, std::uint64_t flags);

    // engine_lifecycle.cpp
    void setState(EngineState state);
    void setShortcutStatus(ShortcutStatus status);
    void emit(const EngineEvent& event);
    void reset(ResetReason reason);
    void listenTapDisabled(bool reenabled);
    void shortcutTapDisabled(bool reenabled);
    void syncShortcutSource();
    void tellTapTriggers();
    void tellStandingAside();
    bool isRunning() const { return std::holds_alternative<engine_state::Running>(state_); }

    // engine_switching.cpp
    enum class Origin { trigger, request };
    void enqueue(const Rule& rule, Origin origin = Origin::trigger);
    void drain();
    void perform(const Rule& rule);
    RemoteGate remoteGate() const;
    void sendGuestKey(const Rule& rule);

    EngineState state_ = engine_state::Stopped{};
    ShortcutStatus shortcutStatus_ = ShortcutStatus::notNeeded;
    EventObserver onEvent_;
    std::function<void()> onUnavailableShortcuts_;
    std::shared_ptr<DiagnosticsRecorder> diagnostics_;
    std::optional<remote_apps::Kind> frontmostRemoteKind_;
    ShortcutKey guestKey_{49, {ModifierKey::leftControl}}; // Control+Space
    bool guestKeyEnabled_ = true;
    bool skipsLocalSwitchInRemoteApps_ = true;

    std::shared_ptr<EventSource> source_;
    std::shared_ptr<ShortcutSource> shortcutSource_;
    std::shared_ptr<InputSourceService> service_;
    std::shared_ptr<SecureInputProviding> secureInput_;
    std::shared_ptr<GuestKeySending> guestKeySender_;
    double tapMax_;
    Clock clock_;
    Scheduler schedule_;

    EventNormalizer normalizer_;
    KeyStateMachine machine_;
    std::unordered_map<ModifierKey, Rule> rulesByKey_;
    bool guardsTaps_ = true;
    ShortcutMatcher shortcutMatcher_;
    std::unordered_map<ShortcutKey, Rule> shortcutRules_;
    std::set<std::string> availableIDs_;
    struct Queued {
        Rule rule;
        Origin origin;
    };
    std::deque<Queued> queue_; // waiting to be performed
    bool isDraining_ = false;  // a drain is scheduled or running
    std::optional<PendingSwitch> pending_;
    ModifierSet secureAtDown_; // triggers that went down under secure text entry
    CaptureHandler captureHandler_;
    double captureDeadline_ = 0;
    KeyStateMachine captureMachine_;
    bool isRefeeding_ = false; // a swallowed event goes through the key pipeline
};

} // namespace hopsel
