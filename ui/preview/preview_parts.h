// Stand-ins for engine and platform, behind the pictures: they hold what they are given and do nothing.
//
// Each lives as long as the model that it was made for.
#pragma once

#include "core/engine/engine_controlling.h"
#include "core/platform/file_storage.h"
#include "core/platform/input_source_directory.h"
#include "core/platform/login_item.h"
#include "core/platform/preferences_storing.h"
#include "core/platform/running_apps.h"
#include "core/platform/secure_input.h"
#include "core/platform/system_settings_opening.h"

#include <map>
#include <utility>

namespace hopsel {

class PreviewEngine final : public EngineControlling {
  public:
    PreviewEngine(EngineState state, ShortcutStatus status) : state_(state), shortcutStatus_(status) {}

    EngineState state() const override { return state_; }
    ShortcutStatus shortcutStatus() const override { return shortcutStatus_; }
    void setOnEvent(EventObserver observer) override { onEvent = std::move(observer); }
    bool isCapturing() const override { return false; }
    std::shared_ptr<DiagnosticsRecorder> diagnostics() const override { return diagnostics_; }
    void setDiagnostics(std::shared_ptr<DiagnosticsRecorder> recorder) override {
        diagnostics_ = std::move(recorder);
    }
    std::optional<remote_apps::Kind> frontmostRemoteKind() const override { return remoteKind_; }
    void setFrontmostRemoteKind(std::optional<remote_apps::Kind> kind) override { remoteKind_ = kind; }
    ShortcutKey guestKey() const override { return guestKey_; }
    void setGuestKey(ShortcutKey key) override { guestKey_ = key; }
    void start() override {}
    void stop() override {}
    void apply(const Config& /*config*/) override {}
    void refreshSources() override {}
    void retryShortcutIfNeeded() override {}
    void handle(SystemEvent /*event*/) override {}
    void beginTriggerCapture(CaptureHandler /*handler*/) override {}
    void cancelTriggerCapture() override {}

    /// To play an event to the model.
    EventObserver onEvent;

  private:
    EngineState state_;
    ShortcutStatus shortcutStatus_;
    std::shared_ptr<DiagnosticsRecorder> diagnostics_;
    std::optional<remote_apps::Kind> remoteKind_;
    ShortcutKey guestKey_;
};

/// A disk with nothing but the files that were written to it.
class PreviewStorage final : public FileStorage {
  public:
    std::filesystem::path userDataDirectory() const override { return "/preview"; }
    bool exists(const std::filesystem::path& file) const override { return files_.contains(file); }
    std::string read(const std::filesystem::path& file) const override { return files_.at(file); }
    void createDirectories(const std::filesystem::path& /*folder*/) override {}
    void writeAtomically(const std::filesystem::path& file, std::string_view bytes) override {
        files_[file] = bytes;
    }
    std::optional<FileMark> mark(const std::filesystem::path& file) const override {
        return exists(file) ? std::optional(FileMark{}) : std::nullopt;
    }
    bool replace(const std::filesystem::path& file, const std::optional<FileMark>& /*expected*/,
                 std::string_view bytes) override {
        files_[file] = bytes;
        return true;
    }
    std::vector<std::filesystem::path>
    startingWith(const std::filesystem::path& /*beginning*/) const override {
        return {};
    }
    void clearLeftovers(const std::filesystem::path& /*file*/) override {}
    void copy(const std::filesystem::path& from, const std::filesystem::path& to) override {
        files_[to] = files_.at(from);
    }

  private:
    std::map<std::filesystem::path, std::string> files_;
};

class PreviewDirectory final : public InputSourceDirectory {
  public:
    PreviewDirectory(std::vector<InputSourceInfo> sources, std::string current)
        : sources_(std::move(sources)), current_(std::move(current)) {}
    std::vector<InputSourceInfo> enabledSources() override { return sources_; }
    std::optional<std::string> currentID() override { return current_; }

  private:
    std::vector<InputSourceInfo> sources_;
    std::string current_;
};

class PreviewLoginItem final : public LoginItemControlling {
  public:
    LoginItemStatus status() const override { return status_; }
    void setEnabled(bool on) override { status_ = on ? LoginItemStatus::enabled : LoginItemStatus::disabled; }

  private:
    LoginItemStatus status_ = LoginItemStatus::enabled;
};

class PreviewSettings final : public SystemSettingsOpening {
  public:
    PreviewSettings(bool inputMonitoring, bool accessibility)
        : inputMonitoring_(inputMonitoring), accessibility_(accessibility) {}
    void requestInputMonitoring() override {}
    void openInputMonitoring() override {}
    bool inputMonitoringGranted() const override { return inputMonitoring_; }
    bool accessibilityGranted() const override { return accessibility_; }
    void requestAccessibility() override {}
    void openAccessibility() override {}
    void openLoginItems() override {}
    void openInputSources() override {}

  private:
    bool inputMonitoring_;
    bool accessibility_;
};

class PreviewPreferences final : public PreferencesStoring {
  public:
    bool showCurrentSourceLabel() const override { return showLabel_; }
    void setShowCurrentSourceLabel(bool on) override { showLabel_ = on; }
    bool engineEnabled() const override { return enabled_; }
    void setEngineEnabled(bool on) override { enabled_ = on; }
    bool onboardingCompleted() const override { return completed_; }
    void setOnboardingCompleted(bool completed) override { completed_ = completed; }
    bool toldThatItRunsOn() const override { return true; }
    void setToldThatItRunsOn(bool /*told*/) override {}

  private:
    bool showLabel_ = true;
    bool enabled_ = true;
    bool completed_ = true;
};

class PreviewApps final : public RunningAppsProviding {
  public:
    std::vector<std::string> runningBundleIDs() override {
        return {"com.apple.finder", "org.pqrs.Karabiner-Elements.Settings"};
    }
};

/// Tells of password fields, as a platform does that needs no words about it.
class PreviewSecureInput final : public SecureInputProviding {
  public:
    bool isEnabled() const override { return false; }
};

} // namespace hopsel
