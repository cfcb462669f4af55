// A platform that is played: the delegate's whole surroundings without an operating system.
//
// Keys go in through `source`, what the system would tell through the two observers; what came of it stands
// in the fakes. The settings file is a real one, in a folder that the test gives.
#pragma once

#include "platform/interface/platform.h"
#include "platform/interface/single_instance.h"
#include "platform/posix/posix_file_storage.h"
#include "support/fakes/app_fakes.h"
#include "support/fakes/engine_fakes.h"

#include <utility>

namespace hopsel::fakes {

class PlayedSystemEvents final : public SystemEventObserving {
  public:
    void start() override { isStarted = true; }
    void stop() override { isStarted = false; }

    bool isStarted = false;
};

class PlayedFrontmostApp final : public FrontmostAppObserving {
  public:
    void start() override { isStarted = true; }

    bool isStarted = false;
};

class NoPanel final : public TrayHosting {
  public:
    explicit NoPanel(TrayHosting::OnChange& teller) : teller_(teller) {}
    void start(OnChange onChange) override { teller_ = std::move(onChange); }
    std::unique_ptr<PanelItem> makeItem(TrayKind /*kind*/, StatusMenu& /*menu*/) override { return nullptr; }

  private:
    TrayHosting::OnChange& teller_;
};

class OnlyInstance final : public SingleInstance {
  public:
    bool acquire() override { return !isTaken; }
    void release() override {}
    std::optional<std::int64_t> otherProcess() const override { return std::nullopt; }
    bool activateOther() const override { return true; }

    bool isTaken = false;
};

class PlayedPlatform final : public Platform {
  public:
    explicit PlayedPlatform(std::filesystem::path folder) : folder_(std::move(folder)) {
        for (const char* id : {"A", "B"}) catalog->sources.push_back({id, id, "", {"en"}, true});
        catalog->current = "A";
    }

    DiagnosticsEnvironment environment() const override {
        return {[this] { return time.now; }, [] { return QDateTime::currentDateTimeUtc(); }, QTimeZone::utc(),
                "played", "none"};
    }
    Log& log() override { return logged; }
    std::shared_ptr<FileStorage> storage() const override {
        return std::make_shared<PosixFileStorage>(folder_);
    }
    EngineCoordinator::Parts engineParts() override {
        EngineCoordinator::Parts parts;
        parts.source = source;
        parts.shortcutSource = filter;
        parts.service = service;
        parts.secureInput = secure;
        parts.guestKeySender = guestKeys;
        parts.schedule = [](const std::function<void()>& task) { task(); };
        return parts;
    }
    std::shared_ptr<SecureInputProviding> secureInput() const override { return secure; }
    std::shared_ptr<InputSourceCatalog> inputSources() const override { return catalog; }
    std::shared_ptr<LoginItemControlling> loginItem() override { return std::make_shared<FakeLoginItem>(); }
    std::shared_ptr<SystemSettingsOpening> settingsOpener() override {
        return std::make_shared<FakeSettings>(calls);
    }
    std::shared_ptr<PreferencesStoring> preferences() override { return stored; }
    std::shared_ptr<RunningAppsProviding> runningApps() override {
        return std::make_shared<FakeRunningApps>();
    }
    std::shared_ptr<ReportDelivering> reportDelivery() override {
        return std::make_shared<FakeReportDelivery>(calls);
    }
    std::function<bool(const ShortcutKey&)> systemShortcutConflict() const override {
        return [](const ShortcutKey&) { return false; };
    }
    std::shared_ptr<LocalKeyMonitoring> localKeys() override {
        return std::make_shared<NoLocalKeyMonitoring>();
    }
    std::unique_ptr<TrayHosting> trayHost() override { return std::make_unique<NoPanel>(tellTray); }
    SystemEventObserving& systemObserver() override { return system; }
    FrontmostAppObserving& frontmostObserver() override { return frontmost; }
    void followAppearance(std::function<void(design::Appearance)> onChange) override {
        onChange(design::Appearance::light);
    }
    void setOnReopen(std::function<void()> callback) override { reopen = std::move(callback); }
    void setOnCommand(CommandHandler handler) override { command = std::move(handler); }
    void recoverFrom(SystemEvent event) override { recovered.push_back(event); }
    Connection retry() override {
        ++retries;
        return Connection::kept;
    }
    bool needsRetry() const override { return isBroken; }

    /// The user's finger on a modifier key.
    void key(ModifierKey key, bool isDown) {
        ModifierSet held;
        if (isDown) held.insert(key);
        time.advance(0.01);
        source->onEvent({RawEventType::flagsChanged, keyCode(key), flagsOf(held), time.now, false});
    }
    void tap(ModifierKey tapped) {
        key(tapped, true);
        key(tapped, false);
    }

    VirtualTime time;
    Calls calls;
    std::shared_ptr<FakeEventSource> source = std::make_shared<FakeEventSource>();
    std::shared_ptr<FakeShortcutSource> filter = std::make_shared<FakeShortcutSource>();
    std::shared_ptr<FakeInputSourceService> service = std::make_shared<FakeInputSourceService>();
    std::shared_ptr<FakeSecureInput> secure = std::make_shared<FakeSecureInput>();
    std::shared_ptr<FakeGuestKeySender> guestKeys = std::make_shared<FakeGuestKeySender>();
    std::shared_ptr<FakeCatalog> catalog = std::make_shared<FakeCatalog>();
    std::shared_ptr<FakePreferences> stored = std::make_shared<FakePreferences>();
    RecordingLog logged;
    PlayedSystemEvents system;
    PlayedFrontmostApp frontmost;
    std::function<void()> reopen;
    CommandHandler command;
    TrayHosting::OnChange tellTray;
    std::vector<SystemEvent> recovered;
    bool isBroken = false;
    int retries = 0;

  private:
    std::filesystem::path folder_;
};

} // namespace hopsel::fakes
