// What scenarios cannot say: who holds whom, what sources are told, re-entrancy, and what is recorded.
#include "engine_stream.h"
#include "scenario.h"

#include <gmock/gmock.h>
#include <random>

namespace hopsel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class Engine : public testing::Test {
  protected:
    void tap() {
        rig.press(ModifierKey::rightCommand);
        rig.release(ModifierKey::rightCommand);
    }

    Scenario scenario;
    fakes::EngineRig& rig = scenario.rig;
    std::shared_ptr<EngineCoordinator> engine = rig.engine;
};

TEST_F(Engine, TellsTheFilterItsKeysAndStartsEachSourceOnce) {
    EXPECT_THAT(rig.filter->shortcuts, testing::UnorderedElementsAre(
                                           ShortcutKey{96, {}}, ShortcutKey{49, {ModifierKey::leftShift}}));
    EXPECT_EQ(scenario.run("start retry other-rules"), "reset config");
    EXPECT_THAT(rig.filter->shortcuts, ElementsAre(ShortcutKey{96, {}}));
    EXPECT_EQ(rig.filter->starts + rig.source->starts, 2);
}

// For filters that swallow before they can ask.
TEST_F(Engine, TellsTheFilterWhenNothingWouldBeSwallowed) {
    engine->beginTriggerCapture(1, [](ModifierKey) {});
    EXPECT_TRUE(rig.filter->standsAside);
    engine->cancelTriggerCapture();
    EXPECT_FALSE(rig.filter->standsAside);
    for (const bool isTaken : {true, false}) {
        engine->beginTriggerCapture(1, [](ModifierKey) {});
        rig.time.advance(isTaken ? 0 : 2);
        tap();
        EXPECT_FALSE(rig.filter->standsAside) << isTaken;
    }
    engine->setFrontmostRemoteKind(remote_apps::Kind::remoteScreen);
    EXPECT_TRUE(rig.filter->standsAside);
    engine->setSkipsLocalSwitchInRemoteApps(false);
    EXPECT_FALSE(rig.filter->standsAside);
}

TEST_F(Engine, RunsIfWhoHearsOfALostTapStopsAndStartsIt) {
    engine->setOnEvent([this](const EngineEvent& event) {
        const auto* reset = std::get_if<engine_event::Reset>(&event);
        if (reset == nullptr || reset->reason != ResetReason::tapDisabled) return;
        engine->stop();
        engine->start();
    });
    rig.source->onDisabled(false);
    EXPECT_EQ(engine->state(), EngineState(engine_state::Running{}));
}

TEST_F(Engine, TellsTheListenerWhichTapsAreItsOwnUnlessAnotherComputerHasThem) {
    Rule off = fakes::tapRule("off", ModifierKey::leftOption, "A", "B");
    off.enabled = false;
    engine->apply({2, {fakes::tapRule("1", ModifierKey::rightCommand, "A", "B"), off}});
    const ModifierSet own{ModifierKey::rightCommand};
    EXPECT_EQ(rig.source->tapTriggers, own);
    for (const auto kind : {remote_apps::Kind::guestOS, remote_apps::Kind::remoteScreen}) {
        engine->setFrontmostRemoteKind(kind);
        EXPECT_TRUE(rig.source->tapTriggers.empty());
        engine->setFrontmostRemoteKind(std::nullopt);
        EXPECT_EQ(rig.source->tapTriggers, own);
    }
    engine->setGuardsTaps(false);
    EXPECT_TRUE(rig.source->tapTriggers.empty());
}

TEST_F(Engine, PassesOnWhichCombinationsAreTaken) {
    int told = 0;
    engine->setOnUnavailableShortcuts([&] { ++told; });
    rig.filter->taken = {{96, {}}};
    rig.filter->onUnavailableChanged();
    EXPECT_EQ(told, 1);
    EXPECT_THAT(engine->unavailableShortcuts(), ElementsAre(ShortcutKey{96, {}}));
    EXPECT_EQ(engine->shortcutStatus(), ShortcutStatus::running) << "the others work";
    engine->stop();
    EXPECT_THAT(engine->unavailableShortcuts(), IsEmpty());
}

TEST_F(Engine, KeepsNoGrabOfAFilterThatWasLost) {
    rig.filter->onDisabled(false);
    EXPECT_FALSE(rig.filter->isStarted);
}

TEST_F(Engine, SwitchesOnRequestAlsoWhereNoKeyIsHeard) {
    rig.source->onDisabled(false);
    tap();
    const Rule asked = fakes::tapRule("asked", ModifierKey::leftControl, "A", "B");
    EXPECT_TRUE(engine->request(asked));
    EXPECT_EQ(scenario.run("turn"), "reset tap, degraded: tap, filter off, A>B") << "and no trigger has";
    EXPECT_TRUE(engine->request(asked));
    engine->stop();
    EXPECT_FALSE(engine->request(asked));
    scenario.run("turn");
    EXPECT_THAT(rig.service->switches, SizeIs(1));
}

TEST_F(Engine, IsHeldWeaklyByItsCallbacks) {
    tap();
    engine.reset();
    rig.engine.reset();
    EXPECT_EQ(scenario.run("f5+ rcmd listener-lost filter-lost turn"), "");
    EXPECT_THAT(rig.service->switches, IsEmpty());
}

TEST_F(Engine, OutlivesItsOwnerWhileItDrains) {
    engine.reset();
    rig.service->duringSwitch = [&] { rig.engine.reset(); };
    EXPECT_EQ(scenario.run("rcmd f5+"), "no f5+, A>B, B>C");
}

TEST_F(Engine, PerformsTriggersOfASwitchInTheSameLoop) {
    rig.service->duringSwitch = [&] {
        rig.service->duringSwitch = nullptr;
        rig.time.advance(0.5); // a pending switch counts from the end of the switch
        tap();
        EXPECT_THAT(rig.scheduler.tasks, IsEmpty());
    };
    tap();
    tap();
    EXPECT_THAT(rig.scheduler.tasks, SizeIs(1));
    EXPECT_EQ(scenario.run("!takes-effect turn 900ms rcmd"), "A>B?, A>A?, A>B?, A>A?");
}

TEST_F(Engine, RecordsEveryKeyOnceAndEveryEventBeforeTheObserver) {
    const auto recorder = std::make_shared<DiagnosticsRecorder>();
    engine->setDiagnostics(recorder);
    recorder->startRecording();
    engine->setOnEvent([&](const EngineEvent& event) {
        EXPECT_EQ(recorder->entries().back(),
                  (DiagnosticEntry{rig.time.now, diagnostic_kind::Engine{event}}));
    });
    scenario.run("a+ rcmd secure ropt !secure lshift+ space+ space* space- turn capture click synthetic a+");
    std::vector<diagnostic_kind::Key> keys;
    for (const DiagnosticEntry& entry : recorder->entries()) {
        if (const auto* key = std::get_if<diagnostic_kind::Key>(&entry.kind)) keys.push_back(*key);
    }
    using enum KeyVerdict;
    using enum ModifierKey;
    using namespace key_event_kind;
    const std::vector<diagnostic_kind::Key> expected{{KeyDown{}, {}, passed},
                                                     {ModifierDown{rightCommand}, {rightCommand}, passed},
                                                     {ModifierUp{rightCommand}, {}, switchRequested},
                                                     {ModifierDown{rightOption}, {rightOption}, passed},
                                                     {ModifierUp{rightOption}, {}, suppressed},
                                                     {ModifierDown{leftShift}, {leftShift}, passed},
                                                     {KeyDown{}, {leftShift}, shortcutFired},
                                                     {KeyDown{}, {leftShift}, shortcutConsumed},
                                                     {KeyUp{}, {leftShift}, shortcutConsumed},
                                                     {MouseDown{}, {}, captured}};
    EXPECT_EQ(keys, expected);
    EXPECT_EQ(recorder->entries().size(), keys.size() + 3) << "two switches, one suppressed";
    rig.synthetic = false;
    for (int click = 0; click < 250; ++click) rig.click();
    EXPECT_THAT(recorder->entries(), SizeIs(200));
    recorder->startRecording();
    recorder->stopRecording();
    rig.click();
    EXPECT_THAT(recorder->entries(), IsEmpty());
}

TEST(RandomStream, GoesAsTheModelSaysAndBreaksNoInvariant) {
    for (StreamKind kind : {StreamKind::honest, StreamKind::wild}) {
        std::size_t switches = 0;
        for (unsigned seed = 1; seed <= 250; ++seed) {
            std::mt19937 random(seed);
            std::vector<std::uint8_t> bytes(1000);
            for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(random());
            ASSERT_NO_THROW(switches += runEngineStream(bytes, kind)) << "seed " << seed;
        }
        EXPECT_GT(switches, 1500U) << "the streams are too tame to tell anything";
    }
}

} // namespace
} // namespace hopsel
