// The model between engine, store and views: start, edits, switches, what is displayed, the report.
#include "core/rules/temporary_folder.h"
#include "model/source_suggester.h"
#include "model/texts/l10n.h"
#include "support/fakes/model_rig.h"
#include "support/qt_waiting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace hopsel {
namespace {

using namespace fakes;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Optional;

const Trigger rightCommand = trigger::ModifierTap{ModifierKey::rightCommand};
const Trigger rightOption = trigger::ModifierTap{ModifierKey::rightOption};
const Trigger shiftSpace = trigger::Shortcut{{49, {ModifierKey::leftShift}}};
const Trigger controlSpace = trigger::Shortcut{{49, {ModifierKey::leftControl}}};

const EditResult added = edit_result::Added{};

class Model : public testing::Test, protected ModelRig {
  protected:
};

TEST_F(Model, IsBuiltWithoutTouchingFileOrEngineAndStartsInOrder) {
    addStoredRule();
    build();
    EXPECT_THAT(calls, IsEmpty());
    EXPECT_EQ(engine->recorder, recorder);
    EXPECT_EQ(engine->guest, (ShortcutKey{49, {ModifierKey::leftControl}}));
    EXPECT_FALSE(engine->onEvent);
    model->start();
    EXPECT_THAT(calls, ElementsAre("engine observe", "directory list", "engine apply 1", "engine start"));
    EXPECT_EQ(model->statusLine(), StatusLine::ok);
    EXPECT_EQ(model->rules().size(), 1U);
    EXPECT_TRUE(preferences->completed) << "who has rules needs no introduction";
}

TEST_F(Model, RefusesEveryEditWhileTheFileCannotBeUsed) {
    for (const std::string text : {"{", R"({"schemaVersion":7,"rules":[]})", ""}) {
        std::filesystem::remove_all(file);
        if (text.empty())
            std::filesystem::create_directory(file);
        else
            folder.write("config.json", text);
        calls.clear();
        build();
        model->start();
        ASSERT_TRUE(model->storeProblem()) << text;
        EXPECT_THAT(calls, ElementsAre("engine observe", "directory list", "engine apply 0", "engine start"));
        EXPECT_EQ(model->statusLine(), StatusLine::configProblem);
        calls.clear();
        const EditResult refused = edit_result::Failed{"settings unavailable"};
        EXPECT_FALSE(model->canEditRules());
        EXPECT_EQ(model->addRule(shiftSpace, korean, english), refused);
        EXPECT_EQ(model->updateSources("any", korean, english), refused);
        EXPECT_FALSE(model->removeRule("any"));
        EXPECT_FALSE(model->setRuleEnabled("any", true));
        EXPECT_THAT(calls, IsEmpty());
        EXPECT_TRUE(text.empty() || contents(file) == text);
    }
}

TEST_F(Model, StoresEachEditAndTellsTheEngineThen) {
    launch();
    EXPECT_EQ(model->addRule(rightCommand, korean, english), added);
    ASSERT_EQ(model->rules().size(), 1U);
    const std::string id = model->rules()[0].id;
    EXPECT_EQ(model->updateSources(id, english, korean), added);
    EXPECT_TRUE(model->setRuleEnabled(id, false));
    EXPECT_THAT(calls, ElementsAre("engine apply 1", "engine apply 1", "engine apply 1"));
    const Rule expected{id, false, rightCommand, action::Toggle{{"abc", "ABC"}, {"hangul", "Korean"}}};
    EXPECT_THAT(model->rules(), ElementsAre(expected));
    RuleStore reader(file, storage, [] { return 0; });
    reader.load();
    EXPECT_THAT(reader.config().rules, ElementsAre(expected));
    EXPECT_TRUE(model->removeRule(id));
    EXPECT_THAT(model->rules(), IsEmpty());
}

TEST_F(Model, LeavesEverythingWhenAnEditFails) {
    addStoredRule();
    launch();
    const std::string id = model->rules()[0].id;
    const std::vector<RuleIssue> duplicate{rule_issue::DuplicateTrigger{id}};
    EXPECT_EQ(model->previewIssues(rightCommand, korean, english), duplicate);
    EXPECT_EQ(model->addRule(rightCommand, korean, english), EditResult(edit_result::Invalid{duplicate}));
    EXPECT_EQ(model->updateSources(id, english, english),
              EditResult(edit_result::Invalid{{rule_issue::SameSource{}}}));
    EXPECT_EQ(model->updateSources("x", korean, english), EditResult(edit_result::Failed{"rule not found"}));
    EXPECT_FALSE(model->removeRule("x"));
    onFullDisk([&] {
        const EditResult result = model->addRule(rightOption, korean, english);
        ASSERT_TRUE(std::holds_alternative<edit_result::Failed>(result));
        EXPECT_THAT(std::get<edit_result::Failed>(result).message,
                    testing::MatchesRegex(R"(writeFailed\(.*File too large.*\))"));
        EXPECT_FALSE(model->setRuleEnabled(id, false));
    });
    EXPECT_EQ(model->rules().size(), 1U);
    EXPECT_TRUE(model->rules()[0].enabled);
    EXPECT_THAT(calls, IsEmpty());
}

TEST_F(Model, FollowsTheEngine) {
    launch();
    directory->current = "hangul";
    emitEvent(engine_event::Switched{"r", "abc", "hangul", false, 1});
    EXPECT_THAT(model->currentSourceID(), Optional(std::string("hangul")));
    EXPECT_EQ(model->switchCount(), 0);
    emitEvent(engine_event::Switched{"r", "abc", "hangul", true, 1});
    emitEvent(engine_event::SwitchFailed{"r", "abc", select_result::NotFound{}});
    EXPECT_EQ(model->switchCount(), 1);

    // Each status wins over the ones below it.
    emitEvent(engine_event::ShortcutStatusChanged{ShortcutStatus::unavailable});
    EXPECT_EQ(model->statusLine(), StatusLine::accessibilityMissing);
    emitEvent(engine_event::StateChanged{engine_state::Degraded{DegradedReason::tapDisabled}});
    EXPECT_EQ(model->statusLine(), StatusLine::tapDisabled);
    emitEvent(engine_event::StateChanged{engine_state::Degraded{DegradedReason::permissionMissing}});
    EXPECT_EQ(model->statusLine(), StatusLine::permissionMissing);
    emitEvent(engine_event::StateChanged{engine_state::Stopped{}});
    EXPECT_EQ(model->statusLine(), StatusLine::starting);
    model->setEngineEnabled(false);
    emitEvent(engine_event::StateChanged{engine_state::Degraded{DegradedReason::tapDisabled}});
    EXPECT_EQ(model->statusLine(), StatusLine::paused);

    const auto observer = engine->onEvent;
    model.reset();
    observer(engine_event::StateChanged{engine_state::Running{}}); // the engine may outlive it
    recorder->startRecording();
}

// In menu, window and panel alike, for they all ask this.
TEST_F(Model, SaysThatItWorksOnlyWhileARuleThatIsOnCanSwitch) {
    launch();
    EXPECT_EQ(model->statusLine(), StatusLine::noRules);
    model->addRule(rightCommand, korean, english);
    model->addRule(rightOption, english, korean);
    model->setRuleEnabled(model->rules()[1].id, false);
    EXPECT_EQ(model->statusLine(), StatusLine::ok);
    const auto statusWith = [&](std::vector<InputSourceInfo> sources) {
        directory->sources = std::move(sources);
        model->sourcesChanged();
        EXPECT_EQ(model->menuState().status, model->statusLine());
        return model->statusLine();
    };
    EXPECT_EQ(statusWith({}), StatusLine::nothingToSwitch) << "the framework is gone";
    EXPECT_EQ(statusWith({korean}), StatusLine::nothingToSwitch);
    InputSourceInfo fixed = korean;
    fixed.isSelectCapable = false;
    EXPECT_EQ(statusWith({fixed, english}), StatusLine::nothingToSwitch);
    EXPECT_EQ(model->statusItemAppearance().symbolName, "exclamationmark.triangle");
    EXPECT_EQ(statusWith({korean, english}), StatusLine::ok);
    emitEvent(engine_event::ShortcutStatusChanged{ShortcutStatus::unavailable});
    EXPECT_EQ(model->statusLine(), StatusLine::accessibilityMissing);
    emitEvent(engine_event::ShortcutStatusChanged{ShortcutStatus::notNeeded});
    // Where only combinations arrive, a lone key's rule is named and the others work.
    engine->hears = false;
    emitEvent(engine_event::StateChanged{engine_state::Running{}});
    EXPECT_EQ(model->statusLine(), StatusLine::tapsUnheard);
    EXPECT_EQ(model->warning(rightCommand, true), RuleWarning::tapUnheard);
    EXPECT_FALSE(model->warning(rightCommand, false) || model->warning(shiftSpace, true));
    model->addRule(shiftSpace, korean, english);
    model->setRuleEnabled(model->rules()[0].id, false);
    EXPECT_EQ(model->statusLine(), StatusLine::ok);
    model->setRuleEnabled(model->rules()[2].id, false);
    EXPECT_EQ(model->statusLine(), StatusLine::noRules);
}

TEST_F(Model, RetriesOnlyWhatIsWantedAndDegraded) {
    addStoredRule();
    engine->stateAfterStart = engine_state::Degraded{DegradedReason::permissionMissing};
    launch();
    engine->stateAfterStart = engine_state::Running{};
    engine->status = ShortcutStatus::unavailable;
    EXPECT_TRUE(model->needsRetry());
    model->retryPermissionIfNeeded();
    EXPECT_TRUE(model->needsRetry()) << "combinations cannot be had yet";
    engine->status = ShortcutStatus::running;
    EXPECT_FALSE(model->needsRetry());
    calls.pop_back();
    EXPECT_EQ(model->statusLine(), StatusLine::accessibilityMissing);
    model->retryPermissionIfNeeded();
    EXPECT_EQ(model->statusLine(), StatusLine::ok);
    EXPECT_EQ(model->shortcutStatus(), ShortcutStatus::running);
    model->retryPermissionIfNeeded();
    EXPECT_THAT(calls, ElementsAre("engine start", "engine retryShortcut", "engine retryShortcut"));
    model->setEngineEnabled(false);
    calls.clear();
    engine->status = ShortcutStatus::unavailable;
    EXPECT_FALSE(model->needsRetry());
    model->retryPermissionIfNeeded();
    EXPECT_THAT(calls, IsEmpty());
    EXPECT_FALSE(preferences->enabled);
}

TEST_F(Model, PassesOnWhatThePlatformReports) {
    launch();
    model->sourcesChanged();
    model->systemEvent(SystemEvent::screenUnlocked);
    EXPECT_THAT(calls, ElementsAre("directory list", "engine refreshSources", "engine handle 3"));
    model->frontmostAppChanged("org.virtualbox.app.VirtualBoxVM");
    EXPECT_EQ(engine->remoteKind, remote_apps::Kind::guestOS);
    model->frontmostAppChanged(std::nullopt);
    EXPECT_FALSE(engine->remoteKind);

    engine->stop();
    EXPECT_FALSE(model->captureTrigger([](ModifierKey) {}));
    EXPECT_FALSE(engine->isCapturing());
}

TEST_F(Model, PerformsWhatTheMenuOffers) {
    launch();
    EXPECT_FALSE(std::filesystem::exists(file)) << "nothing is written before the first rule";
    model->perform(MenuAction::toggleEngine);
    EXPECT_FALSE(model->engineEnabled());
    model->perform(MenuAction::toggleLaunchAtLogin);
    EXPECT_TRUE(model->menuState().launchAtLogin);
    loginItem->refuses = true;
    loginItem->current = LoginItemStatus::unavailable;
    model->setLaunchAtLogin(true);
    EXPECT_EQ(model->launchStatus(), LoginItemStatus::unavailable) << "read again after the refusal";
    settings->accessibility = false;
    for (const MenuAction action : {MenuAction::openPrivacySettings, MenuAction::openAccessibilitySettings,
                                    MenuAction::openSettings, MenuAction::openBugReport, MenuAction::quit})
        model->perform(action);
    model->addRule(rightCommand, korean, english);
    model->addRule(shiftSpace, korean, english); // the first that needs it
    EXPECT_THAT(calls,
                ElementsAre("engine stop", "open input monitoring", "open accessibility", "engine apply 1",
                            "engine apply 2", "request accessibility", "open accessibility"));
}

TEST_F(Model, ShowsRulesAndSourcesByTheirNamesOfToday) {
    addStoredRule(rightOption, {"gone", "Gone Layout", "", {"ja"}, true});
    addStoredRule();
    launch();
    l10n::setLanguage(L10nLanguage::en);
    directory->sources = {{"hangul", "한국어", "ime", {"ko"}, true}, english};
    model->sourcesChanged();
    EXPECT_THAT(model->menuState().ruleLines,
                ElementsAre("Right ⌥  Gone Layout ⇄ ABC", "Right ⌘  한국어 ⇄ ABC"));
    EXPECT_EQ(model->statusItemAppearance().badge, (StatusBadge{"G", "A", false}));
    model->setRuleEnabled(model->rules()[0].id, false);
    directory->current = "hangul";
    model->currentSourceChanged();
    EXPECT_EQ(model->statusItemAppearance().badge, (StatusBadge{"한", "A", true}));
    model->setRuleEnabled(model->rules()[1].id, false);
    EXPECT_FALSE(model->statusItemAppearance().badge) << "no rule is on, and the icon says so";
}

TEST_F(Model, TellsVariantsOfOneNameApart) {
    directory->sources = {
        {"xkb:us", "English", "", {"en"}, true}, {"xkb:us+dvorak", "English", "", {"en"}, true}, korean};
    directory->current = "xkb:us";
    launch();
    std::vector<std::string> names;
    for (const InputSourceInfo& source : model->selectableSources()) names.push_back(source.name);
    EXPECT_THAT(names, ElementsAre("English [us]", "English [us+dvorak]", "Korean"));
    model->addRule(rightCommand, model->sources()[0], model->sources()[1]);
    const auto badge = model->statusItemAppearance().badge;
    ASSERT_TRUE(badge && badge->second);
    EXPECT_NE(badge->first, *badge->second);
}

TEST_F(Model, IsLookedAtOnceAfterChangesAndNeverByWhoIsGone) {
    launch();
    std::vector<std::size_t> seen;
    {
        QObject context;
        model->observe(&context, [&] { seen.push_back(model->rules().size()); });
        model->addRule(rightCommand, korean, english);
        model->setShowSourceLabel(false);
        EXPECT_THAT(seen, IsEmpty());
        ASSERT_TRUE(test::runLoopUntil([&] { return !seen.empty(); }));
        model->setShowSourceLabel(true);
    }
    EXPECT_TRUE(test::staysFalse([&] { return seen.size() > 1; }));
    EXPECT_THAT(seen, ElementsAre(1U));
}

TEST_F(Model, RecordsWhileDiagnosticsAreShownAndReportsWhatItKnows) {
    launch();
    model->addRule(trigger::ModifierTap{ModifierKey::leftOption}, korean, english);
    model->setRuleEnabled(model->rules()[0].id, false);
    model->addRule(rightCommand, english, korean);
    record(1, key_event_kind::KeyDown{});
    runningApps->running = {"com.parallels.desktop"};
    model->setDiagnosticsVisible(true);
    EXPECT_THAT(recorder->entries(), IsEmpty());
    settings->accessibility = false;
    emitEvent(engine_event::ShortcutStatusChanged{ShortcutStatus::unavailable});
    for (const double time : {1.0, 2.0, 3.5})
        recorder->record(diagnostic_kind::Engine{engine_event::Reset{ResetReason::tapDisabled}}, time);
    const std::string report = model->buildReport();
    EXPECT_THAT(report, HasSubstr("\n생성: 2026-11-16T10:42:23+09:00\n버전: 0.1.0\n"));
    EXPECT_THAT(report, HasSubstr("접근성 미허용\n엔진: running / 조합 키 탭: unavailable\n"));
    EXPECT_THAT(report,
                HasSubstr("\n1. 끔 | 단독 탭: leftOption | hangul ⇄ abc\n2. 사용 | 단독 탭: rightCommand | "
                          "abc ⇄ hangul\n\n[감지된 입력 관련 앱]\n- Parallels\n\n[경고]\n- 입력 감지가 "
                          "짧은 시간에 3번 중단됐습니다.\n"));
    calls.clear();
    model->composeReportMail();
    EXPECT_EQ(delivery->copied, report);
    EXPECT_THAT(calls, ElementsAre("copy", "mail mailto:support@hopsel.example"))
        << "what the mail asks to paste is there before it opens";
    model->setDiagnosticsVisible(false);
    EXPECT_FALSE(recorder->entries().empty()) << "kept for a report";
    model->setDiagnosticsVisible(true);
    EXPECT_FALSE(model->reportCopied());
}

TEST_F(Model, DatesReportsByTheClockOfTheUser) {
    const struct {
        int hours, minutes;
        const char* told;
        const char* file;
    } zones[] = {
        {-5, 0, "2026-11-15T20:42:23-05:00", "20261115-204223"},
        {-3, -30, "2026-11-15T22:12:23-03:30", "20261115-221223"},
        {0, -30, "2026-11-16T01:12:23-00:30", "20261116-011223"},
        {0, 0, "2026-11-16T01:42:23+00:00", "20261116-014223"},
        {5, 45, "2026-11-16T07:27:23+05:45", "20261116-072723"},
    };
    for (const auto& zone : zones) {
        timeZone = QTimeZone((zone.hours * 60 + zone.minutes) * 60);
        launch();
        EXPECT_THAT(model->buildReport(), HasSubstr(std::string("\n생성: ") + zone.told + "\n"));
        model->saveReport();
        EXPECT_THAT(calls.back(), HasSubstr(zone.file));
    }
}

TEST_F(Model, ProbesWhatArrivesFromThePressOfTheButtonOn) {
    using key_event_kind::ModifierDown;
    addStoredRule(trigger::ModifierTap{ModifierKey::rightCommand});
    launch();
    model->setDiagnosticsVisible(true);
    record(99.99, ModifierDown{ModifierKey::rightCommand});
    EXPECT_EQ(model->probeResult(), std::nullopt) << "nobody has asked for one";
    model->startProbe(); // at 100
    EXPECT_EQ(model->probeResult(), ProbeResult::noSignal);
    record(100, ModifierDown{ModifierKey::leftCommand});
    EXPECT_EQ(model->probeResult(), ProbeResult::arrivedAsOtherKey);
    record(100.5, ModifierDown{ModifierKey::rightCommand});
    EXPECT_EQ(model->probeResult(), ProbeResult::received);
    model->setRuleEnabled(model->rules()[0].id, false);
    EXPECT_EQ(model->probeResult(), std::nullopt) << "there is no key to be probed";
    model->setRuleEnabled(model->rules()[0].id, true);
    EXPECT_EQ(model->probeResult(), ProbeResult::received);
    model->setDiagnosticsVisible(false);
    model->setDiagnosticsVisible(true);
    EXPECT_EQ(model->probeResult(), std::nullopt);
}

TEST(SourceSuggester, PairsAnotherLanguageWithEnglish) {
    const InputSourceInfo us{"us", "U.S.", "", {"en-US"}, true};
    const InputSourceInfo plain{"plain", "Plain", "", {}, true};
    const InputSourceInfo fixed{"fixed", "Fixed", "", {"ja"}, false};
    const auto suggest = [](const std::vector<InputSourceInfo>& sources) {
        const auto pair = source_suggester::suggest(sources);
        return pair.a.value_or("-") + " " + pair.b.value_or("-");
    };
    EXPECT_EQ(suggest({korean, english}), "hangul abc");
    EXPECT_EQ(suggest({fixed, english, us, plain}), "plain abc");
    EXPECT_EQ(suggest({english, us}), "abc us");
    EXPECT_EQ(suggest({english}), "abc -");
}

} // namespace
} // namespace hopsel
