// What scenarios cannot say: who holds whom, what sources are told, re-entrancy, and what is recorded.
#include "engine_stream.h"
#include "scenario.h"

#include <gmock/gmock.h>
#include <random>
#include <stdexcept>

namespace hopsel {
namespace {

using std::holds_alternative;
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

TEST_F(Engine, tellsTheFilterItsKeysAndStartsEachSourceOnce) {
    EXPECT_THAT(rig.filter->shortcuts, testing::UnorderedElementsAre(
                                           ShortcutKey{96, {}}, ShortcutKey{49, {ModifierKey::leftShift}}));
    EXPECT_EQ(scenario.run("start retry other-rules"), "reset config");
    EXPECT_THAT(rig.filter->shortcuts, ElementsAre(ShortcutKey{96, {}}));
    EXPECT_EQ(rig.filter->starts + rig.source->starts, 2);
}

TEST_F(Engine, sendsTheGuestKeyThatItTells) {
    EXPECT_EQ(scenario.run("guest f5-as-guest-key rcmd"), "cmd guest 96|");
    EXPECT_THAT(rig.guestKeys->sent, ElementsAre(ShortcutKey{96, {}}));
}

TEST_F(Engine, needsNoFilterAndNoGuestKeySender) {
    EngineCoordinator::Parts parts{rig.source, nullptr, rig.service,        rig.secureInput,
                                   nullptr,    0.5,     [] { return 1.0; }, [](const auto& task) { task(); }};
    const auto bare = EngineCoordinator::create(std::move(parts));
    std::vector<EngineEvent> events;
    bare->apply(Scenario::rules());
    bare->start();
    bare->setFrontmostRemoteKind(remote_apps::Kind::guestOS);
    bare->setOnEvent([&](const EngineEvent& event) { events.push_back(event); });
    tap();
    EXPECT_EQ(bare->shortcutStatus(), ShortcutStatus::notNeeded);
    EXPECT_THAT(events, ElementsAre(engine_event::RuleSkipped{"cmd", skip_reason::GuestKeyUnavailable{}}));
}

TEST_F(Engine, isHeldWeaklyByItsCallbacks) {
    tap();
    engine.reset();
    rig.engine.reset();
    EXPECT_EQ(scenario.run("f5+ rcmd listener-lost filter-lost turn"), "");
    EXPECT_THAT(rig.service->switches, IsEmpty());
}

TEST_F(Engine, outlivesItsOwnerWhileItDrains) {
    engine.reset();
    rig.service->duringSwitch = [&] { rig.engine.reset(); };
    EXPECT_EQ(scenario.run("rcmd f5+"), "no f5+, A>B, B>C");
}

TEST_F(Engine, endsStoppedWhateverTheObserverDoes) {
    scenario.run("listener-lost");
    engine->setOnEvent([&](const EngineEvent& event) {
        if (!holds_alternative<engine_event::Reset>(event)) return;
        engine->start();
        tap();
    });
    engine->stop();
    EXPECT_EQ(engine->state(), EngineState{engine_state::Stopped{}});
    EXPECT_FALSE(rig.source->isStarted);
    rig.scheduler.runAll();
    EXPECT_THAT(rig.service->switches, IsEmpty()) << "a rule is dropped when the engine no longer runs";
}

TEST_F(Engine, staysStoppedWhenStoppedInTheMiddleOfALoss) {
    engine->setOnEvent([&](const EngineEvent& event) {
        if (event == EngineEvent{engine_event::Reset{ResetReason::tapDisabled}}) engine->stop();
    });
    rig.source->onDisabled(false);
    EXPECT_EQ(engine->state(), EngineState{engine_state::Stopped{}});
}

TEST_F(Engine, switchesAfterASwitchThatThrew) {
    rig.service->duringSwitch = [] { throw std::runtime_error("a fault"); };
    tap();
    EXPECT_THROW(rig.scheduler.runAll(), std::runtime_error);
    rig.service->duringSwitch = nullptr;
    EXPECT_EQ(scenario.run("rcmd"), "A>B");
}

TEST_F(Engine, performsTriggersOfASwitchInTheSameLoop) {
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
    EXPECT_EQ(switch_planner::target("A", "B", "A", PendingSwitch{"B", 11}, 10), "B")
        << "not one of the future";
}

TEST_F(Engine, dropsACaptureHandlerOnce) {
    for (const char* end : {"cancel", "stop start", "15001ms click", "capture cancel"}) {
        int deaths = 0;
        const auto dies = [&](const void*) {
            ++deaths;
            engine->cancelTriggerCapture();
        };
        engine->beginTriggerCapture([held = std::shared_ptr<void>(nullptr, dies)](ModifierKey) { FAIL(); });
        scenario.run(end);
        EXPECT_EQ(deaths, 1) << end;
    }
}

TEST(ScenarioWords, areRefusedWhenUnknown) {
    for (const char* word : {"rcmd?", "rcmd*", "f5~", "f6+", "xms"})
        EXPECT_THROW(Scenario().run(word), std::invalid_argument) << word;
}

class Recording : public Engine {
  protected:
    Recording() {
        engine->setDiagnostics(recorder);
        recorder->onChange = [this] { ++changes; };
        recorder->startRecording();
    }

    std::shared_ptr<DiagnosticsRecorder> recorder = std::make_shared<DiagnosticsRecorder>();
    int changes = 0;
};

TEST_F(Recording, tellsEveryKeyOnceAndEveryEventBeforeTheObserver) {
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
}

TEST_F(Recording, keepsTheNewestUntilItStartsAgain) {
    const DiagnosticKind kind = diagnostic_kind::Engine{engine_event::Reset{ResetReason::wake}};
    for (int time = 0; time < 250; ++time) recorder->record(kind, time);
    ASSERT_THAT(recorder->entries(), SizeIs(200));
    for (std::size_t i = 0; i < 200; ++i) EXPECT_EQ(recorder->entries()[i].time, static_cast<double>(50 + i));
    recorder->stopRecording();
    recorder->record(kind, 250);
    EXPECT_EQ(recorder->entries().back().time, 249);
    EXPECT_EQ(changes, 251) << "the start and each record, but not the stop and what came after it";
    recorder->startRecording();
    EXPECT_THAT(recorder->entries(), IsEmpty());
    recorder->record(kind, 1);
    recorder->clear();
    EXPECT_THAT(recorder->entries(), IsEmpty());
    EXPECT_TRUE(recorder->isRecording());
    EXPECT_EQ(changes, 254);
}

TEST_F(Recording, listenersMayReplaceThemselvesAndCancelTheCapture) {
    auto text = std::make_shared<std::string>();
    recorder->onChange = [this, text] {
        recorder->onChange = nullptr;
        engine->setDiagnostics(nullptr);
        *text += "change ";
    };
    engine->setOnEvent([this, text](const EngineEvent&) {
        engine->setOnEvent({});
        *text += "event ";
    });
    scenario.run("wake wake");
    EXPECT_EQ(*text, "change event ");
    engine->setDiagnostics(recorder);
    scenario.run("capture rcmd+");
    recorder->onChange = [this] { engine->cancelTriggerCapture(); };
    EXPECT_EQ(scenario.run("rcmd-"), "");
}

TEST(RandomStream, goesAsTheModelSaysAndBreaksNoInvariant) {
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
