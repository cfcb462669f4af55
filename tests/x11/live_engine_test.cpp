// The main job, whole: a key on a real X server, through hook, engine and XKB sources, to a switched layout.
#include "live_engine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace hopsel;
using namespace hopsel::test;

namespace {

TEST_F(LiveEngine, ATapAndAShortcutToggleTheLayout) {
    keyboard->tap(key::rightSuper);
    ASSERT_TRUE(switchesReach(1));
    EXPECT_EQ(layouts.lockedGroup(), 1);
    keyboard->press(key::leftShift);
    keyboard->tap(key::space);
    keyboard->release(key::leftShift);
    ASSERT_TRUE(switchesReach(2));
    EXPECT_EQ(layouts.lockedGroup(), 0);
    const auto& last = std::get<engine_event::Switched>(events.back());
    EXPECT_EQ(last.from, "xkb:ru");
    EXPECT_EQ(last.to, "xkb:us");
    EXPECT_EQ(window->typed(), "");
}

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
    during([&] {
        const double start = uptimeSeconds();
        runLoopUntil([&] { return uptimeSeconds() - start > 0.51; }); // a long hold is long
    });
    expectNoSwitchSince(before);
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

TEST_F(LiveEngine, TypingAroundTheShortcutStaysInOrderAndInItsLayout) {
    keyboard->tap(key::a);
    keyboard->post({{key::leftShift, true}, {key::space, true}, {key::leftShift, false}});
    ASSERT_TRUE(switchesReach(1));
    keyboard->post({{key::a, true}, {key::space, false}, {key::a, false}});
    EXPECT_TRUE(window->waitForText("aф"));
}

TEST_F(LiveEngine, ASourceThatIsRemovedBreaksItsRulesUntilItIsBack) {
    sources->onSourcesChanged = [this] { engine->refreshSources(); };
    setLayouts("us");
    const auto tapUntil = [&](const std::function<bool(const EngineEvent&)>& outcome) {
        events.clear();
        return runLoopUntil([&] {
            keyboard->tap(key::rightSuper);
            return std::any_of(events.begin(), events.end(), outcome);
        });
    };
    EXPECT_TRUE(tapUntil([&](const EngineEvent& event) {
        const auto* skipped = std::get_if<engine_event::RuleSkipped>(&event);
        return skipped != nullptr && skipped->reason == SkipReason(skip_reason::BrokenSource{{"xkb:ru"}});
    }));
    setLayouts("us,ru");
    EXPECT_TRUE(tapUntil(
        [](const EngineEvent& event) { return std::holds_alternative<engine_event::Switched>(event); }));
}

TEST_F(LiveEngine, TheGuestKeyReachesTheGuestAloneAndFiresNothingHere) {
    engine->setFrontmostRemoteKind(remote_apps::Kind::guestOS);
    keyboard->press(key::leftShift);
    keyboard->press(key::space); // fires; the fingers are still on the keys
    runLoopUntil([&] { return hook->isBusy(key::space); });
    keyboard->post({{key::space, false}, {key::leftShift, false}});
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

} // namespace
