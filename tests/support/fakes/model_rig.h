// An application model over fakes, with a real store on a real file.
//
// The model is made by `launch`, so that a test can set the stage first.
#pragma once

#include "core/diagnostics/diagnostics_recorder.h"
#include "model/app_model.h"
#include "platform/posix/posix_file_storage.h"
#include "session/temporary_folder.h"
#include "support/fakes/app_fakes.h"
#include "support/fakes/engine_fakes.h"

#include <QTimeZone>

namespace hopsel::fakes {

inline const InputSourceInfo korean{"hangul", "Korean", "ime", {"ko"}, true};
inline const InputSourceInfo english{"abc", "ABC", "layout", {"en"}, true};
inline const InputSourceInfo palette{"palette", "Emoji", "", {}, false};

class ModelRig {
  public:
    ModelRig() {
        directory->sources = {korean, english, palette};
        directory->current = "abc";
    }
    ModelRig(const ModelRig&) = delete;
    ModelRig& operator=(const ModelRig&) = delete;

    void build() {
        store = std::make_shared<RuleStore>(file, storage, [] { return 1700000000; });
        AppModel::Parts parts;
        parts.store = store;
        parts.engine = engine;
        parts.directory = directory;
        parts.loginItem = loginItem;
        parts.settings = settings;
        parts.preferences = preferences;
        parts.appVersion = "0.1.0";
        parts.systemShortcutConflict = [this](const ShortcutKey& key) { return key == systemKey; };
        parts.diagnostics = recorder;
        parts.runningApps = runningApps;
        parts.reportDelivery = delivery;
        parts.secureInput = secureInput;
        parts.environment = {
            [] { return 100; },
            [] { return QDateTime(QDate(2026, 11, 16), QTime(1, 42, 23), QTimeZone::utc()); }, timeZone,
            "14.5.0", "arm64"};
        parts.log = &log;
        model = std::make_unique<AppModel>(std::move(parts));
    }
    /// Built and started; what happened meanwhile is not in `calls`.
    AppModel& launch() {
        build();
        model->start();
        calls.clear();
        return *model;
    }
    /// Into the file, as another run or another program does it.
    void addStoredRule(const Trigger& trigger = trigger::ModifierTap{ModifierKey::rightCommand},
                       const InputSourceInfo& a = korean) const {
        RuleStore writer(file, storage, [] { return 0; });
        writer.load();
        writer.add(Rule::make(trigger, action::Toggle{{a.id, a.name}, {english.id, english.name}}));
    }
    void emitEvent(const EngineEvent& event) const { engine->onEvent(event); }
    void record(double time, KeyEventKind kind) const {
        recorder->record(diagnostic_kind::Key{kind, {}, KeyVerdict::passed}, time);
    }

    QTimeZone timeZone{9 * 3600};
    session::TemporaryFolder folder;
    std::filesystem::path file = folder.path() / "config.json";
    std::shared_ptr<PosixFileStorage> storage = std::make_shared<PosixFileStorage>(folder.path());
    std::shared_ptr<RuleStore> store;
    Calls calls;
    ShortcutKey systemKey{49, {ModifierKey::leftControl}};
    std::shared_ptr<FakeEngine> engine = std::make_shared<FakeEngine>(calls);
    std::shared_ptr<FakeDirectory> directory = std::make_shared<FakeDirectory>(calls);
    std::shared_ptr<FakePreferences> preferences = std::make_shared<FakePreferences>();
    std::shared_ptr<FakeLoginItem> loginItem = std::make_shared<FakeLoginItem>();
    std::shared_ptr<FakeSettings> settings = std::make_shared<FakeSettings>(calls);
    std::shared_ptr<FakeRunningApps> runningApps = std::make_shared<FakeRunningApps>();
    std::shared_ptr<FakeReportDelivery> delivery = std::make_shared<FakeReportDelivery>(calls);
    std::shared_ptr<FakeSecureInput> secureInput = std::make_shared<FakeSecureInput>();
    std::shared_ptr<DiagnosticsRecorder> recorder = std::make_shared<DiagnosticsRecorder>();
    RecordingLog log;
    std::unique_ptr<AppModel> model;
};

} // namespace hopsel::fakes
