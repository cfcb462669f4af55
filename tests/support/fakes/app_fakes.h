// Recording fakes of what the application model stands on: the engine and the application's own seams.
//
// Those whose order matters write what they are asked into one list of calls. Fields are public; a test sets
// how a fake behaves. Each lives as long as the test that made it.
#pragma once

#include "core/engine/engine_controlling.h"
#include "core/platform/input_source_directory.h"
#include "core/platform/login_item.h"
#include "core/platform/preferences_storing.h"
#include "core/platform/report_delivering.h"
#include "core/platform/running_apps.h"
#include "core/platform/system_settings_opening.h"

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace hopsel::fakes {

using Calls = std::vector<std::string>;

/// Starts at once. Tells its observer nothing by itself; tests do.
class FakeEngine final : public EngineControlling {
  public:
    explicit FakeEngine(Calls& log) : calls(log) {}

    EngineState state() const override { return current; }
    ShortcutStatus shortcutStatus() const override { return status; }
    ShortcutSet unavailableShortcuts() const override { return taken; }
    void setOnUnavailableShortcuts(std::function<void()> observer) override { onTaken = std::move(observer); }
    void setOnEvent(EventObserver observer) override {
        calls.emplace_back("engine observe");
        onEvent = std::move(observer);
    }
    bool isCapturing() const override { return capture != nullptr; }
    std::shared_ptr<DiagnosticsRecorder> diagnostics() const override { return recorder; }
    void setDiagnostics(std::shared_ptr<DiagnosticsRecorder> given) override { recorder = std::move(given); }
    std::optional<remote_apps::Kind> frontmostRemoteKind() const override { return remoteKind; }
    void setFrontmostRemoteKind(std::optional<remote_apps::Kind> kind) override { remoteKind = kind; }
    ShortcutKey guestKey() const override { return guest; }
    void setGuestKey(ShortcutKey key) override { guest = key; }
    bool canGuardTaps() const override { return canGuard; }
    bool hearsTaps() const override { return hears; }
    void setGuardsTaps(bool on) override { guards = on; }
    void start() override {
        calls.emplace_back("engine start");
        current = stateAfterStart;
    }
    void stop() override {
        calls.emplace_back("engine stop");
        current = engine_state::Stopped{};
    }
    void apply(const Config& config) override {
        calls.push_back("engine apply " + std::to_string(config.rules.size()));
    }
    void refreshSources() override { calls.emplace_back("engine refreshSources"); }
    bool request(const Rule& rule) override {
        requested.push_back(rule);
        return !std::holds_alternative<engine_state::Stopped>(current);
    }
    void retryShortcutIfNeeded() override { calls.emplace_back("engine retryShortcut"); }
    void handle(SystemEvent event) override {
        calls.push_back("engine handle " + std::to_string(static_cast<int>(event)));
    }
    void beginTriggerCapture(CaptureHandler handler) override { capture = std::move(handler); }
    void cancelTriggerCapture() override { capture = nullptr; }

    Calls& calls;
    bool canGuard = false;
    bool hears = true;
    bool guards = true;
    EngineState current;
    EngineState stateAfterStart = engine_state::Running{};
    ShortcutStatus status = ShortcutStatus::notNeeded;
    std::vector<Rule> requested;
    ShortcutSet taken;
    std::function<void()> onTaken;
    EventObserver onEvent;
    CaptureHandler capture;
    std::shared_ptr<DiagnosticsRecorder> recorder;
    std::optional<remote_apps::Kind> remoteKind;
    ShortcutKey guest;
};

class FakeDirectory final : public InputSourceDirectory {
  public:
    explicit FakeDirectory(Calls& log) : calls(log) {}
    std::vector<InputSourceInfo> enabledSources() override {
        calls.emplace_back("directory list");
        return sources;
    }
    std::optional<std::string> currentID() override { return current; }
    bool isAsking() const override { return isAsked; }
    bool canSetStart(const std::string& id) const override { return id == settableStart; }
    void setStartsInOwnScript(const std::string& id, bool inOwnScript) override {
        calls.push_back((inOwnScript ? "own script " : "as before ") + id);
    }
    SwitchHindrance hindrance(std::int32_t code) const override {
        return code == 5 ? SwitchHindrance::noTextField : SwitchHindrance::unknown;
    }

    Calls& calls;
    bool isAsked = false;
    std::string settableStart;
    std::vector<InputSourceInfo> sources;
    std::optional<std::string> current;
};

class FakePreferences final : public PreferencesStoring {
  public:
    bool showCurrentSourceLabel() const override { return showLabel; }
    void setShowCurrentSourceLabel(bool on) override { showLabel = on; }
    bool engineEnabled() const override { return enabled; }
    void setEngineEnabled(bool on) override { enabled = on; }
    bool onboardingCompleted() const override { return completed; }
    void setOnboardingCompleted(bool on) override { completed = on; }
    bool toldThatItRunsOn() const override { return told; }
    void setToldThatItRunsOn(bool on) override { told = on; }

    std::optional<bool> indicatesSwitches() const override { return indicates; }
    void setIndicatesSwitches(bool on) override { indicates = on; }
    bool guardsTaps() const override { return guards; }
    void setGuardsTaps(bool on) override { guards = on; }

    bool showLabel = true;
    std::optional<bool> indicates;
    bool guards = true;
    bool enabled = true;
    bool completed = false;
    bool told = false;
};

class FakeLoginItem final : public LoginItemControlling {
  public:
    LoginItemStatus status() const override { return current; }
    void setEnabled(bool on) override {
        if (refuses) throw std::runtime_error("refused");
        current = on ? LoginItemStatus::enabled : LoginItemStatus::disabled;
    }

    LoginItemStatus current = LoginItemStatus::disabled;
    bool refuses = false;
};

class FakeSettings final : public SystemSettingsOpening {
  public:
    explicit FakeSettings(Calls& log) : calls(log) {}
    void requestInputMonitoring() override { calls.emplace_back("request input monitoring"); }
    void openInputMonitoring() override { calls.emplace_back("open input monitoring"); }
    bool inputMonitoringGranted() const override { return true; }
    bool accessibilityGranted() const override { return accessibility; }
    void requestAccessibility() override { calls.emplace_back("request accessibility"); }
    void openAccessibility() override { calls.emplace_back("open accessibility"); }
    void openLoginItems() override { calls.emplace_back("open login items"); }
    void openInputSources() override { calls.emplace_back("open input sources"); }

    Calls& calls;
    bool accessibility = true;
};

class FakeRunningApps final : public RunningAppsProviding {
  public:
    std::vector<std::string> runningBundleIDs() override { return running; }

    std::vector<std::string> running;
};

class FakeReportDelivery final : public ReportDelivering {
  public:
    explicit FakeReportDelivery(Calls& log) : calls(log) {}
    std::optional<std::filesystem::path> saveFile(const std::string& suggestedName,
                                                  const std::string& /*contents*/) override {
        calls.push_back("save " + suggestedName);
        return location;
    }
    void reveal(const std::filesystem::path& file) override {
        calls.push_back("reveal " + file.filename().string());
    }
    void copyToClipboard(const std::string& text) override {
        calls.emplace_back("copy");
        copied = text;
    }
    void openMail(const std::string& address) override {
        calls.push_back("mail " + address.substr(0, address.find('?')));
    }

    Calls& calls;
    std::optional<std::filesystem::path> location;
    std::string copied;
};

} // namespace hopsel::fakes
