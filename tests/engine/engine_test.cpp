// What scenarios cannot say: who holds whom, what sources are told, re-entrancy, and what is recorded.
#include "scenario.h"

#include <gmock/gmock.h>

namespace hopsel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr auto rightCommand = ModifierKey::rightCommand;

void tap(fakes::EngineRig& rig, ModifierKey key) {
    rig.press(key);
    rig.release(key);
}

TEST(EngineRules, firstEnabledRuleOfATriggerWins) {
    Scenario scenario;
    Config config;
    config.rules = {
        fakes::tapRule("disabled", rightCommand, "A", "C"), fakes::tapRule("first", rightCommand, "A", "B"),
        fakes::tapRule("second", rightCommand, "A", "C"), fakes::shortcutRule("first", {96, {}}, "A", "B"),
        fakes::shortcutRule("second", {96, {}}, "A", "C")};
    config.rules[0].enabled = false;
    scenario.rig.engine->apply(config);
    EXPECT_EQ(scenario.run("| rcmd+ rcmd- f5+ 10ms f5- f5+"), "no f5+, A>B, B>A, no f5-, no f5+, A>B");
}

TEST(EngineShortcutSource, learnsItsKeysBeforeItStartsAndWhenTheyChange) {
    Scenario scenario;
    const auto& filter = *scenario.rig.filter;
    EXPECT_THAT(filter.shortcuts, testing::UnorderedElementsAre(ShortcutKey{96, {}},
                                                                ShortcutKey{49, {ModifierKey::leftShift}}));
    Config config;
    config.rules = {fakes::shortcutRule("one", {97, {}}, "A", "B")};
    scenario.rig.engine->apply(config);
    EXPECT_THAT(filter.shortcuts, ElementsAre(ShortcutKey{97, {}}));
    EXPECT_EQ(filter.starts, 1);
}

TEST(EngineShortcutSource, mayBeAbsent) {
    fakes::EngineRig rig;
    EngineCoordinator::Parts parts;
    parts.source = rig.source;
    parts.service = rig.service;
    parts.secureInput = rig.secureInput;
    parts.clock = [] { return 1.0; };
    parts.schedule = [](const auto& task) { task(); };
    const auto engine = EngineCoordinator::create(std::move(parts));
    std::vector<EngineEvent> events;
    engine->setOnEvent([&](const EngineEvent& event) { events.push_back(event); });
    engine->apply(Scenario::rules());
    engine->start();
    engine->setFrontmostRemoteKind(remote_apps::Kind::guestOS); // and nobody to send its key
    tap(rig, rightCommand);
    EXPECT_EQ(engine->shortcutStatus(), ShortcutStatus::notNeeded);
    EXPECT_THAT(events, ElementsAre(engine_event::Reset{ResetReason::configChanged},
                                    engine_event::StateChanged{engine_state::Running{}},
                                    engine_event::RuleSkipped{"cmd", skip_reason::GuestKeyUnavailable{}}));
}

TEST(EngineLifetime, callbacksOfAReleasedEngineDoNothing) {
    Scenario scenario;
    tap(scenario.rig, rightCommand);
    scenario.rig.engine.reset();
    EXPECT_EQ(scenario.run("f5+ f5- rcmd+ rcmd- listener-lost filter-lost turn"), "");
    EXPECT_THAT(scenario.rig.service->switches, IsEmpty());
}

TEST(EngineLifetime, drainOutlivesTheOwnersReference) {
    Scenario scenario;
    auto& rig = scenario.rig;
    rig.service->duringSwitch = [&] { rig.engine.reset(); };
    EXPECT_EQ(scenario.run("rcmd+ rcmd- f5+"), "no f5+, A>B, B>C");
}

TEST(EngineObserver, mayReplaceItselfAndTheRecorder) {
    Scenario scenario;
    auto& rig = scenario.rig;
    rig.engine->setDiagnostics(std::make_shared<DiagnosticsRecorder>());
    rig.engine->diagnostics()->startRecording();
    rig.engine->diagnostics()->onChange = [&] { rig.engine->setDiagnostics(nullptr); };
    auto text = std::make_shared<std::string>("once");
    rig.engine->setOnEvent([&rig, text](const EngineEvent&) {
        rig.engine->setOnEvent({});
        *text += "!";
    });
    rig.engine->handle(SystemEvent::didWake);
    rig.engine->handle(SystemEvent::didWake);
    EXPECT_EQ(*text, "once!");
    EXPECT_EQ(rig.engine->diagnostics(), nullptr);
}

TEST(EngineSwitching, triggersDuringASwitchWaitForTheSameLoop) {
    Scenario scenario;
    auto& rig = scenario.rig;
    rig.service->duringSwitch = [&] {
        rig.service->duringSwitch = nullptr;
        tap(rig, rightCommand);
        EXPECT_THAT(rig.scheduler.tasks, IsEmpty());
    };
    tap(rig, rightCommand);
    tap(rig, rightCommand);
    EXPECT_THAT(rig.scheduler.tasks, SizeIs(1));
    EXPECT_EQ(scenario.run("turn"), "A>B, B>A, A>B");
    tap(rig, rightCommand);
    EXPECT_THAT(rig.scheduler.tasks, SizeIs(1));
}

TEST(EngineSwitching, pendingSwitchOfTheFutureDoesNotCount) {
    EXPECT_EQ(switch_planner::target("A", "B", "A", PendingSwitch{"B", 11}, 10), "B");
}

TEST(EngineSwitching, pendingTimeIsReadAfterTheSwitch) {
    Scenario scenario;
    scenario.rig.service->duringSwitch = [&] { scenario.rig.time.advance(0.5); };
    EXPECT_EQ(scenario.run("unverified rcmd+ rcmd- 900ms rcmd+ rcmd-"), "A>B?, A>A?");
}

class EngineRecording : public testing::Test {
  protected:
    EngineRecording() { scenario.rig.engine->setDiagnostics(recorder); }

    Scenario scenario;
    std::shared_ptr<DiagnosticsRecorder> recorder = std::make_shared<DiagnosticsRecorder>();
};

TEST_F(EngineRecording, tellsEveryKeyOnceWithItsVerdict) {
    recorder->startRecording();
    scenario.run("a+ rcmd+ rcmd- secure ropt+ ropt- plain f5+ f5* f5- capture click synthetic a+");
    std::vector<KeyVerdict> verdicts;
    for (const DiagnosticEntry& entry : recorder->entries()) {
        if (const auto* key = std::get_if<diagnostic_kind::Key>(&entry.kind))
            verdicts.push_back(key->verdict);
    }
    using enum KeyVerdict;
    EXPECT_THAT(verdicts, ElementsAre(passed, passed, switchRequested, passed, suppressed, shortcutFired,
                                      shortcutConsumed, shortcutConsumed, captured));
}

TEST_F(EngineRecording, keepsModifiersAndTimeAndComesBeforeTheObserver) {
    recorder->startRecording();
    std::size_t entriesSeen = 0;
    scenario.rig.engine->setOnEvent([&](const EngineEvent&) { entriesSeen = recorder->entries().size(); });
    scenario.rig.time.now = 70;
    scenario.run("lshift+ space+");
    const ModifierSet shift{ModifierKey::leftShift};
    const engine_event::Switched switched{"space", "A", "B", true, 1.5};
    using diagnostic_kind::Key;
    EXPECT_THAT(
        recorder->entries(),
        ElementsAre(DiagnosticEntry{70, Key{key_event_kind::ModifierDown{ModifierKey::leftShift}, shift,
                                            KeyVerdict::passed}},
                    DiagnosticEntry{70, Key{key_event_kind::KeyDown{}, shift, KeyVerdict::shortcutFired}},
                    DiagnosticEntry{70, diagnostic_kind::Engine{switched}}));
    EXPECT_EQ(entriesSeen, 3U);
}

} // namespace
} // namespace hopsel
