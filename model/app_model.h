// The one observable object between the engine, the settings file and every view.
//
// It owns the state that menu and windows draw, turns what the user wants into edits of the store and
// commands to the engine, and derives what is displayed. Made and owned by start-up, which then calls
// `start`. It reaches engine and platform through interfaces only. The engine's and the
// recorder's callbacks hold it weakly.
#pragma once

#include "core/diagnostics/conflict_analyzer.h"
#include "core/diagnostics/known_apps.h"
#include "core/engine/engine_controlling.h"
#include "core/platform/input_source_directory.h"
#include "core/platform/log.h"
#include "core/platform/login_item.h"
#include "core/platform/preferences_storing.h"
#include "core/platform/report_delivering.h"
#include "core/platform/running_apps.h"
#include "core/platform/secure_input.h"
#include "core/platform/system_settings_opening.h"
#include "core/rules/rule_health.h"
#include "core/rules/rule_store.h"
#include "model/diagnostics_environment.h"
#include "model/diagnostics_feed.h"
#include "model/menu/menu_model.h"
#include "model/menu/status_item_presenter.h"
#include "model/model_results.h"
#include "model/observable_object.h"
#include "model/settings_notice.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace hopsel {

class AppModel final : public ObservableObject {
  public:
    struct Parts {
        std::shared_ptr<RuleStore> store;
        std::shared_ptr<EngineControlling> engine;
        std::shared_ptr<InputSourceDirectory> directory;
        std::shared_ptr<LoginItemControlling> loginItem;
        std::shared_ptr<SystemSettingsOpening> settings;
        std::shared_ptr<PreferencesStoring> preferences;
        std::string appVersion;
        /// Is the combination the system's own key for switching input sources?
        std::function<bool(const ShortcutKey&)> systemShortcutConflict;
        std::shared_ptr<DiagnosticsRecorder> diagnostics;
        std::shared_ptr<RunningAppsProviding> runningApps;
        std::shared_ptr<ReportDelivering> reportDelivery;
        std::shared_ptr<SecureInputProviding> secureInput;
        DiagnosticsEnvironment environment;
        Log* log = nullptr; ///< outlives the model
    };

    /// Sent to a virtual machine instead of switching here: Control+Space.
    static constexpr ShortcutKey guestKey{49, {ModifierKey::leftControl}};

    /// Gives the engine recorder and guest key; neither loads the rules nor starts anything.
    explicit AppModel(Parts parts);

    // app_model.cpp: start-up, the engine and the platform's observers
    void start();
    void systemEvent(SystemEvent event);
    void sourcesChanged();
    void currentSourceChanged();
    void frontmostAppChanged(const std::optional<std::string>& bundleID);
    void retryPermissionIfNeeded();
    /// `retryPermissionIfNeeded` has something to do.
    bool needsRetry() const;

    // app_model.cpp: switches and settings
    void setEngineEnabled(bool on);
    void setShowSourceLabel(bool on);
    void setLaunchAtLogin(bool on);
    bool canGuardTaps() const { return parts_.engine->canGuardTaps(); }
    void setGuardsTaps(bool on);
    void setHasPanel(bool has) { publish(hasPanel_, std::optional(has)); }
    bool accessibilityGranted() const { return parts_.settings->accessibilityGranted(); }
    void requestAccessibilityAccess();
    void requestInputMonitoringAccess();
    void openInputMonitoringSettings() { parts_.settings->openInputMonitoring(); }
    void openLoginItemsSettings() { parts_.settings->openLoginItems(); }
    void openInputSourceSettings() { parts_.settings->openInputSources(); }
    /// Opening the settings or the bug report and quitting are the status item's own affair.
    void perform(MenuAction action);
    void markOnboardingCompleted() { setOnboardingCompleted(true); }
    void resetOnboarding() { setOnboardingCompleted(false); }
    /// True once in the life of an installation: who asks goes on to say that closing a window ends nothing.
    bool takeTellingThatItRunsOn();
    void runOnboardingAgain();
    std::function<void()> onRequestOnboarding;

    // app_model_settings_file.cpp: what becomes of the file
    /// To be called when it may have become another.
    void settingsFileChanged();
    const std::optional<SettingsNotice>& settingsNotice() const { return settingsNotice_; }
    /// Why an edit was refused and what to do about it; empty if it was not, or for the rule's own issues.
    std::string failureText(const EditResult& result) const;
    /// Once more what could not be saved.
    void trySavingAgain();
    /// The user has seen it. A change that was not saved stays until one is.
    void dismissSettingsNotice();

    // app_model_rules.cpp: editing rules. Nothing is edited while there is a store problem.
    bool canEditRules() const { return !storeProblem_; }
    std::vector<InputSourceInfo> selectableSources() const;
    /// `ruleID`: of the rule that is being changed, if there is one.
    std::vector<RuleIssue> previewIssues(const Trigger& trigger, const InputSourceInfo& a,
                                         const InputSourceInfo& b,
                                         const std::string& ruleID = "preview") const;
    EditResult addRule(const Trigger& trigger, const InputSourceInfo& a, const InputSourceInfo& b);
    EditResult updateSources(const std::string& ruleID, const InputSourceInfo& a, const InputSourceInfo& b);
    /// Gives a rule another key and other sources at once.
    EditResult updateRule(const std::string& ruleID, const Trigger& trigger, const InputSourceInfo& a,
                          const InputSourceInfo& b);
    /// Can be undone (`undoRemoval`) until the next one.
    bool removeRule(const std::string& id);
    /// Absent when there is nothing to undo, or its key is used again.
    std::optional<Rule> removedRule() const;
    /// The rule comes back to its place.
    EditResult undoRemoval();
    void forgetRemoval() { publish(removal_, std::nullopt); }
    bool setRuleEnabled(const std::string& id, bool enabled);
    /// For who shows the warnings, to call now and then: nobody tells when the system's own shortcuts change.
    /// Observers hear of it if a rule's warning came or went.
    void refreshConflicts();
    std::optional<RuleWarning> warning(const Trigger& trigger, bool enabled) const;
    RuleHealth health(const Rule& rule) const;
    /// What should be known of the sources, in words; of the first of them that has something to know.
    std::optional<std::string> limitNote(const std::string& idA, const std::string& idB) const;
    /// Of the two, the source that begins in Latin letters and can be set not to, or has been; see
    /// StartOffer.
    std::optional<StartOffer> startOffer(const std::string& idA, const std::string& idB) const;
    /// Changes the user's settings of that input method, or puts them back.
    void take(const StartOffer& offer);
    /// False when the engine is not running; the handler then stays uncalled.
    bool captureTrigger(EngineControlling::CaptureHandler handler);
    void cancelCapture() { parts_.engine->cancelTriggerCapture(); }
    /// From now on the engine tells this one what it tells the recorder of diagnostics; null gives that one
    /// back. Whoever listens hands on to it what it is told.
    void setKeyListener(std::shared_ptr<DiagnosticsRecorder> listener);
    SwitchHindrance hindrance(std::int32_t code) const { return parts_.directory->hindrance(code); }

    /// As if a trigger for the two sources had been pressed; told by events that bear `name`. False when the
    /// engine is not running.
    bool requestSwitch(const std::string& name, const InputSourceRef& a, const InputSourceRef& b);
    /// Those that a person may choose from now; none where there is no choice, or nothing can switch.
    std::vector<MenuSource> sourceChoices() const;
    void selectSource(const std::string& id) { requestSwitch("menu", {id, id}, {id, id}); }
    /// Hears every event of the engine, after the state has taken it in.
    std::function<void(const EngineEvent&)> onEngineEvent;

    // app_model_rule_files.cpp: the file itself, and others like it
    const std::filesystem::path& settingsFile() const { return parts_.store->fileURL(); }
    void showSettingsFile() { parts_.reportDelivery->reveal(parts_.store->fileURL()); }
    /// While there is a store problem: are there rules as they were stored last?
    bool canUseGoodCopy() const;
    std::filesystem::path goodCopyPath() const { return parts_.store->goodCopyURL(); }
    EditResult useGoodCopy();
    /// Without rules. The file that cannot be read is kept beside.
    EditResult startAfresh();
    EditResult exportRules(const std::filesystem::path& file);
    ImportResult importRules(const std::filesystem::path& file);

    // app_model_display.cpp: what is shown, computed on every read
    std::optional<InputSourceInfo> currentSource() const;
    std::optional<std::string> currentSourceName() const;
    std::optional<std::string> currentSourceLabel() const;
    /// The identifier itself where no listed source has it.
    std::string sourceName(const std::string& id) const;
    /// The names of the combinations that another program holds, in the order of the rules; empty where that
    /// is not known.
    std::vector<std::string> takenCombinations() const;
    std::string ruleLine(const Rule& rule) const;
    StatusLine statusLine() const;
    MenuState menuState() const;
    std::optional<StatusBadge> currentSourcePair() const;
    StatusItemAppearance statusItemAppearance() const;

    // app_model_diagnostics.cpp: recording, probe and report
    void setDiagnosticsVisible(bool visible);
    /// The trigger under test: that of the first enabled modifier-tap rule.
    std::optional<ModifierKey> probeTrigger() const;
    void startProbe();
    /// Absent until a probe was started.
    std::optional<ProbeResult> probeResult() const;
    std::vector<ConflictWarning> diagnosticWarnings() const;
    SecureInputState secureInputState() const { return parts_.secureInput->state(); }
    std::string buildReport() const;
    void saveReport();
    void copyReport();
    void composeReportMail();

    const std::vector<Rule>& rules() const { return rules_; }
    const std::vector<InputSourceInfo>& sources() const { return sources_; }
    /// The platform has not told its sources yet; others than these may come in a moment.
    bool isAskingForSources() const { return isAskingForSources_; }
    const std::optional<std::string>& currentSourceID() const { return currentSourceID_; }
    const EngineState& engineState() const { return engineState_; }
    ShortcutStatus shortcutStatus() const { return shortcutStatus_; }
    /// Combinations of the rules that another program holds.
    const ShortcutSet& takenShortcuts() const { return takenShortcuts_; }
    bool engineEnabled() const { return engineEnabled_; }
    LoginItemStatus launchStatus() const { return launchStatus_; }
    const std::optional<StoreProblem>& storeProblem() const { return storeProblem_; }
    bool showSourceLabel() const { return showSourceLabel_; }
    /// Absent where the platform cannot.
    std::optional<bool> indicatesSwitches() const { return indicatesSwitches_; }
    void setIndicatesSwitches(bool on);
    /// Are launchers and menu bars kept from acting on a trigger's lone tap?
    bool guardsTaps() const { return guardsTaps_; }
    /// There is a panel or menu bar with our icon; absent until that is known.
    const std::optional<bool>& hasPanel() const { return hasPanel_; }
    bool onboardingCompleted() const { return onboardingCompleted_; }
    /// Verified switches since launch.
    int switchCount() const { return switchCount_; }
    /// The latest time that a rule fired.
    const Firing& lastFiring() const { return lastFiring_; }
    const std::vector<KnownApp>& detectedApps() const { return detectedApps_; }
    const std::optional<std::filesystem::path>& lastSavedReport() const { return lastSavedReport_; }
    bool reportCopied() const { return reportCopied_; }

    DiagnosticsRecorder& diagnostics() const { return *parts_.diagnostics; }
    DiagnosticsFeed& diagnosticsFeed() { return diagnosticsFeed_; }
    const std::string& appVersion() const { return parts_.appVersion; }

  private:
    using Edit = std::function<void(RuleStore&)>;

    void loadStore();
    void noteStoreProblem(const std::exception& error);
    void takeOutsideChange();
    void say(SettingsNotice notice);
    void takeBackSaveFailure();
    void writeLog(Log::Level level, const std::string& line);
    void handle(const EngineEvent& event);
    void refreshEngineState();
    void refreshSourceList();
    void setOnboardingCompleted(bool completed);
    /// May be called again later, so that everything it needs is its own.
    EditResult edit(const Edit& change);
    EditResult change(const std::string& ruleID, const std::function<void(Rule&)>& apply);
    EditResult refuse(const StoreError& error, const Edit& change);
    void takeRules();
    void noteFiring(const EngineEvent& event);
    EditResult goOnWith(const Config& config);
    StatusLine statusOfRules() const;
    const InputSourceInfo* listed(const std::string& id) const;
    std::string currentName(const InputSourceRef& ref) const;
    std::string label(const InputSourceRef& ref) const;
    StatusBadge badge(const action::Toggle& toggle, bool firstIsCurrent) const;

    Parts parts_;
    DiagnosticsFeed diagnosticsFeed_;
    std::optional<double> probeStart_; ///< on the engine's clock

    std::vector<Rule> rules_;
    std::vector<InputSourceInfo> sources_;
    bool isAskingForSources_ = false;
    std::optional<std::string> currentSourceID_;
    EngineState engineState_;
    ShortcutStatus shortcutStatus_ = ShortcutStatus::notNeeded;
    ShortcutSet takenShortcuts_;
    bool tapsAreHeard_ = true;
    bool engineEnabled_;
    LoginItemStatus launchStatus_ = LoginItemStatus::disabled;
    std::optional<StoreProblem> storeProblem_;
    std::optional<SettingsNotice> settingsNotice_;
    Edit unsaved_; ///< what could not be saved
    bool showSourceLabel_;
    std::optional<bool> indicatesSwitches_;
    std::set<std::string> changedStarts_; ///< sources set to begin in their own script since launch
    bool guardsTaps_;
    std::optional<bool> hasPanel_;
    bool onboardingCompleted_;
    int switchCount_ = 0;
    Firing lastFiring_;
    struct Removal {
        Rule rule;
        std::size_t index;
        friend bool operator==(const Removal&, const Removal&) = default;
    };
    std::optional<Removal> removal_;
    std::vector<KnownApp> detectedApps_;
    std::optional<std::filesystem::path> lastSavedReport_;
    bool reportCopied_ = false;
    std::vector<std::string> conflictingRules_; ///< ids
};

} // namespace hopsel
