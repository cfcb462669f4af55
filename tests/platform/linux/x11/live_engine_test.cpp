// The main job, whole: a key on a real X server, through hook, engine and XKB sources, to a switched layout.
#include "core/diagnostics/diagnostics_recorder.h"
#include "core/diagnostics/report_builder.h"
#include "live_engine.h"
#include "session/temporary_folder.h"

#include <QTimer>
#include <array>
#include <gtest/gtest.h>
#include <regex>
#include <thread>

using namespace hopsel;
using namespace hopsel::test;
using namespace std::chrono_literals;

namespace {

TEST_F(LiveEngine, OrdinaryUseOfTheTriggerNeverSwitches) {
    const auto during = [&](const std::function<void()>& something) {
        keyboard->press(key::rightSuper);
        something();
        keyboard->release(key::rightSuper);
    };
    const auto before = switches();
    during([&] { keyboard->tap(key::c); });
    during([&] { keyboard->button(1); });
    during([&] { keyboard->scroll(XKeyboard::Scroll::down); });
    during([&] { keyboard->tap(key::leftShift); });
    during([&] {
        keyboard->press(key::leftShift);
        keyboard->tap(key::space); // the right Command makes it another combination
        keyboard->release(key::leftShift);
    });
    keyboard->tap(key::leftSuper);
    keyboard->hold(key::rightSuper, 510ms); // a long hold is long, also if all of it is read at once
    expectNoSwitchSince(before);
}

TEST_F(LiveEngine, ATapIsATapHoweverLateItIsRead) {
    pause = 0.6; // between any two events the loop stands still
    keyboard->post({{key::rightSuper, true}, {key::rightSuper, false}});
    EXPECT_TRUE(switchesReach(1));
    keyboard->hold(key::rightSuper, 510ms);
    expectNoSwitchSince(1);
}

TEST_F(LiveEngine, FiveHundredQuickTapsAreFiveHundredSwitches) {
    for (int tap = 0; tap < 500; ++tap) keyboard->post({{key::rightSuper, true}, {key::rightSuper, false}});
    ASSERT_TRUE(switchesReach(500));
    EXPECT_EQ(switches(), 500U);
    EXPECT_EQ(layouts.lockedGroup(), 0);
    std::string expected = "xkb:ru";
    for (const EngineEvent& event : events)
        if (const auto* switched = std::get_if<engine_event::Switched>(&event)) {
            EXPECT_EQ(switched->to, expected);
            expected = expected == "xkb:ru" ? "xkb:us" : "xkb:ru";
        }
}

// As programs do that keep a layout for each window.
TEST_F(LiveEngine, ATapSwitchesAgainAfterAnotherProgramTookTheLastSwitchBack) {
    constexpr std::size_t taps = 25;
    std::thread taker([] {
        XLayouts own;
        for (std::size_t taken = 0; taken < taps; ++taken) {
            if (!own.waitForGroup(1, std::chrono::seconds(20))) return;
            own.lockGroup(0);
        }
    });
    for (std::size_t tap = 1; tap <= taps; ++tap) {
        keyboard->tap(key::rightSuper);
        EXPECT_TRUE(switchesReach(tap)) << tap;
        EXPECT_TRUE(runLoopUntil([this] { return sources->currentID() == english.sourceId; }));
    }
    taker.join();
    for (const EngineEvent& event : events) {
        const auto* switched = std::get_if<engine_event::Switched>(&event);
        EXPECT_TRUE(switched == nullptr || switched->to == russian.sourceId);
    }
}

TEST_F(LiveEngine, TypingAroundTheShortcutStaysInOrderAndInItsLayout) {
    keyboard->tap(key::a);
    keyboard->post({{key::leftShift, true}, {key::space, true}, {key::leftShift, false}});
    ASSERT_TRUE(switchesReach(1));
    keyboard->post({{key::a, true}, {key::space, false}, {key::a, false}});
    EXPECT_TRUE(window->waitForText("aф"));
}

TEST_F(LiveEngine, TheGuestKeyReachesTheGuestAloneAndFiresNothingHere) {
    engine->setFrontmostRemoteKind(remote_apps::Kind::guestOS);
    keyboard->press(key::leftShift);
    keyboard->press(key::space); // fires; the fingers are still on the keys
    runLoopUntil([&] { return hook->isBusy(key::space); });
    // Longer than any tap, and while the engine waits for it inside.
    QTimer::singleShot(700, [&] { keyboard->post({{key::space, false}, {key::leftShift, false}}); });
    ASSERT_TRUE(runLoopUntil([&] {
        return !events.empty() && std::holds_alternative<engine_event::GuestKeySent>(events.back());
    }));
    EXPECT_TRUE(window->waitForKeys(6));
    EXPECT_EQ(window->keys(), "+42 -42 +29 +57 -57 -29");
    EXPECT_EQ(layouts.lockedGroup(), 0);
}

TEST_F(LiveEngine, DegradesWhenTheServerGoesAndRunsAgainWithTheNext) {
    server.kill();
    ASSERT_TRUE(
        runLoopUntil([&] { return !std::holds_alternative<engine_state::Running>(engine->state()); }));
    EXPECT_EQ(engine->state(), EngineState(engine_state::Degraded{DegradedReason::tapDisabled}));
    engine->start();
    EXPECT_EQ(engine->state(), EngineState(engine_state::Degraded{DegradedReason::permissionMissing}));
    XServer next;
    setLayouts("us,ru");
    XKeyboard nextKeyboard;
    ASSERT_TRUE(sources->reconnect());
    engine->refreshSources();
    engine->start();
    EXPECT_EQ(engine->shortcutStatus(), ShortcutStatus::running);
    nextKeyboard.tap(key::rightSuper);
    EXPECT_TRUE(switchesReach(1));
    engine->stop();
}

void cut(X11KeyHook& hook) {
    XDisplay other;
    for (const std::uint32_t handle : hook.handles()) xcb_kill_client(other.get(), handle);
    other.roundTrip();
}

TEST_F(LiveEngine, AConnectionThatIsCutIsOpenedAnewBeforeAnythingIsSaid) {
    keyboard->press(key::leftShift);
    keyboard->press(key::space);
    ASSERT_TRUE(switchesReach(1)); // in the middle of a hold
    events.clear();
    cut(*hook);
    const auto isReset = [&] {
        return !events.empty() && events.back() == EngineEvent(engine_event::Reset{ResetReason::tapDisabled});
    };
    ASSERT_TRUE(runLoopUntil(isReset));
    EXPECT_EQ(events.size(), 1U) << "it ran on";
    keyboard->release(key::space);
    keyboard->release(key::leftShift);
    keyboard->press(key::leftShift);
    keyboard->tap(key::space);
    keyboard->release(key::leftShift);
    EXPECT_TRUE(switchesReach(1)) << "combinations are filtered again";
    const auto rests = [&] {
        if (hook->isOpen()) cut(*hook);
        return engine->state() != EngineState(engine_state::Running{});
    };
    ASSERT_TRUE(runLoopUntil(rests)) << "cut again and again it does not open as often";
    EXPECT_FALSE(hook->isOpen());
    engine->start();
    keyboard->tap(key::rightSuper);
    EXPECT_TRUE(switchesReach(2));
}

TEST_F(LiveEngine, ARecordingCannotTellOneSentenceFromAnotherAndNothingIsWritten) {
    static constexpr std::array codes{key::a, key::b, key::c, key::d, key::s, key::z};
    const TemporaryFolder home;
    for (const char* variable : {"HOME", "TMPDIR", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
        setenv(variable, home.path().c_str(), 1);
    const auto recorder = std::make_shared<DiagnosticsRecorder>();
    engine->setDiagnostics(recorder);
    const auto reportOfTyping = [&](const std::string& text) {
        recorder->startRecording();
        window->clear();
        for (const char letter : text)
            keyboard->tap(letter == ' ' ? key::space : codes[std::string("abcdsz").find(letter)]);
        EXPECT_TRUE(window->waitForText(text)) << "typed it was";
        EXPECT_TRUE(runLoopUntil([&] { return recorder->entries().size() == 2 * text.size(); }));
        ReportInput input;
        input.entries = recorder->entries();
        const std::regex times("\n *[-+][0-9.]+  ");
        return std::regex_replace(report_builder::build(input), times, "\n");
    };
    const std::string report = reportOfTyping("bad cab");
    EXPECT_EQ(report, reportOfTyping("zs d a "));
    EXPECT_EQ(report.find("bad"), std::string::npos);
    EXPECT_TRUE(std::filesystem::is_empty(home.path()));
}

} // namespace
