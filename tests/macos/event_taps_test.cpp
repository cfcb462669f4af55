#include "core/engine/engine_coordinator.h"
#include "core/platform/macos/active_tap.h"
#include "core/platform/macos/listen_tap.h"
#include "core/platform/macos/live_guest_key_sender.h"
#include "core/platform/synthetic_events.h"
#include "macos/macos_test.h"
#include "support/fakes/engine_rig.h"

#include <optional>

namespace hopsel {
namespace {

using macos_fakes::deliver;
using macos_fakes::eventStream;
using testing::ElementsAre;
using testing::IsEmpty;

class EventTaps : public MacosTest {
  protected:
    std::optional<TapFailure::Kind> failureOfStart() {
        try {
            active.start();
            return std::nullopt;
        } catch (const TapFailure& failure) {
            return failure.kind();
        }
    }

    void TearDown() override {
        listen.stop();
        active.stop();
        EXPECT_THAT(eventStream().taps, IsEmpty());
        MacosTest::TearDown();
    }

    fakes::RecordingLog log;
    ListenTap listen;
    ActiveTap active{log};
};

TEST_F(EventTaps, AskForWhatTheyNeedAndNoMore) {
    listen.start();
    active.start();
    ASSERT_EQ(eventStream().taps.size(), 2U);
    for (const macos_fakes::Tap& tap : eventStream().taps) {
        EXPECT_EQ(tap.location, kCGSessionEventTap);
        EXPECT_EQ(tap.placement, kCGHeadInsertEventTap);
        EXPECT_TRUE(tap.isEnabled);
    }
    EXPECT_EQ(eventStream().taps[0].options, kCGEventTapOptionDefault);
    EXPECT_EQ(eventStream().taps[0].mask, 0b1100'0000'0000U);
    EXPECT_EQ(eventStream().taps[1].options, kCGEventTapOptionListenOnly);
    EXPECT_EQ(eventStream().taps[1].mask, 0x0200'1C0AU);
}

TEST_F(EventTaps, AreThereOnceHoweverOftenTheyAreStartedAndStopped) {
    for (int cycle = 0; cycle < 1000; ++cycle) {
        for (int twice = 0; twice < 2; ++twice) {
            listen.start();
            active.start();
        }
        ASSERT_EQ(eventStream().taps.size(), 2U);
        ASSERT_EQ(sourcesOfTest(), 2U);
        if (cycle == 999) break;
        for (int twice = 0; twice < 2; ++twice) {
            listen.stop();
            active.stop();
        }
        ASSERT_EQ(sourcesOfTest(), 0U);
    }
    int events = 0;
    listen.onEvent = [&](const RawEvent&) { ++events; };
    deliver(kCGEventKeyDown);
    EXPECT_EQ(events, 1);
    EXPECT_EQ(eventStream().tapsCreated, 2000);
}

TEST_F(EventTaps, AreThereOnceAfterAThousandNightsAndRestartsOfTheEngine) {
    EngineCoordinator::Parts parts;
    parts.source = std::make_shared<ListenTap>();
    parts.shortcutSource = std::make_shared<ActiveTap>(log);
    parts.service = std::make_shared<fakes::FakeInputSourceService>();
    parts.secureInput = std::make_shared<fakes::FakeSecureInput>();
    parts.guestKeySender = std::make_shared<fakes::FakeGuestKeySender>();
    parts.clock = uptimeSeconds;
    parts.schedule = schedule;
    const auto engine = EngineCoordinator::create(std::move(parts));
    engine->apply({2, {fakes::shortcutRule("rule", {49, {ModifierKey::leftShift}}, "A", "B")}});
    for (int night = 0; night < 1000; ++night) {
        if (night % 2 == 0) engine->stop();
        engine->start();
        engine->handle(SystemEvent::willSleep);
        macos_fakes::disableTap(static_cast<std::size_t>(night % 2), kCGEventTapDisabledByUserInput);
        macos_fakes::advance(3600);
        engine->handle(SystemEvent::didWake);
        engine->retryShortcutIfNeeded();
        ASSERT_EQ(eventStream().taps.size(), 2U) << night;
        ASSERT_EQ(sourcesOfTest(), 2U);
        EXPECT_EQ(eventStream().taps[0].options, kCGEventTapOptionDefault) << "the filter comes first";
        EXPECT_TRUE(eventStream().taps[0].isEnabled && eventStream().taps[1].isEnabled);
    }
    EXPECT_EQ(engine->state(), EngineState(engine_state::Running{}));
    engine->stop();
}

TEST_F(EventTaps, TakeTheirPortsAlongWhenReleased) {
    {
        ListenTap released;
        released.start();
        // Whoever else holds the port, as the loop may: no events come any more.
        const auto port = CfRef<CFMachPortRef>::retain(eventStream().taps.at(0).port);
        released.stop();
        EXPECT_EQ(CFMachPortIsValid(port.get()), 0);
        released.start();
    }
    EXPECT_THAT(eventStream().taps, IsEmpty());
    EXPECT_EQ(sourcesOfTest(), 0U);
}

TEST_F(EventTaps, MayBeReleasedByTheirHandlers) {
    auto listener = std::make_unique<ListenTap>();
    auto filter = std::make_unique<ActiveTap>(log);
    listener->onEvent = [&](const RawEvent&) { listener.reset(); };
    filter->onDisabled = [&](bool) { filter.reset(); };
    filter->start();
    macos_fakes::disableTap(0, kCGEventTapDisabledByTimeout);
    EXPECT_EQ(filter, nullptr);
    listener->start();
    EXPECT_TRUE(deliver(kCGEventKeyDown));
    EXPECT_EQ(listener, nullptr);
}

TEST_F(EventTaps, ListenerReportsModifiersByCodeAndOrdinaryKeysWithout) {
    std::vector<RawEvent> events;
    listen.onEvent = [&](const RawEvent& event) { events.push_back(event); };
    listen.start();
    macos_fakes::advance(1.5);
    deliver(kCGEventKeyDown, {.flags = 0x20002, .keyCode = 49});
    deliver(kCGEventKeyUp, {.keyCode = 49});
    deliver(kCGEventLeftMouseDown);
    deliver(kCGEventRightMouseDown);
    deliver(kCGEventOtherMouseDown);
    EXPECT_EQ(eventStream().keyCodeReads, 0);
    deliver(kCGEventFlagsChanged, {.flags = 0x100010, .keyCode = 54});
    EXPECT_EQ(eventStream().keyCodeReads, 1);
    deliver(kCGEventLeftMouseUp);
    deliver(kCGEventScrollWheel);

    std::vector<std::pair<RawEventType, int>> seen;
    for (const RawEvent& event : events) {
        seen.emplace_back(event.type, event.keyCode);
        EXPECT_DOUBLE_EQ(event.timestamp, uptimeSeconds());
        EXPECT_FALSE(event.synthetic);
    }
    EXPECT_THAT(
        seen, ElementsAre(std::pair(RawEventType::keyDown, 0), std::pair(RawEventType::keyUp, 0),
                          std::pair(RawEventType::mouseDown, 0), std::pair(RawEventType::mouseDown, 0),
                          std::pair(RawEventType::mouseDown, 0), std::pair(RawEventType::flagsChanged, 54)));
    EXPECT_EQ(events.front().flags, 0x20002U);
    EXPECT_EQ(events.back().flags, 0x100010U);
}

TEST_F(EventTaps, FilterSwallowsWhatTheHandlerWantsAndPassesTheRest) {
    active.start();
    EXPECT_TRUE(deliver(kCGEventKeyDown, {.keyCode = 49})) << "nobody has an opinion yet";
    std::vector<ShortcutInput> inputs;
    active.onInput = [&](const ShortcutInput& input) {
        EXPECT_EQ(macos_fakes::openPools(), 1U) << "what this autoreleases would stay until the next click";
        inputs.push_back(input);
        return input.keyCode == 49;
    };
    EXPECT_FALSE(deliver(kCGEventKeyDown, {.flags = 0x20002, .keyCode = 49, .isRepeat = 1}));
    EXPECT_FALSE(deliver(kCGEventKeyUp, {.keyCode = 49}));
    EXPECT_TRUE(deliver(kCGEventKeyDown, {.keyCode = 50}));
    EXPECT_TRUE(deliver(kCGEventFlagsChanged, {.keyCode = 49}));
    using Kind = ShortcutInput::Kind;
    EXPECT_THAT(inputs, ElementsAre(ShortcutInput{Kind::keyDown, 49, 0x20002, true, false},
                                    ShortcutInput{Kind::keyUp, 49, 0, false, false},
                                    ShortcutInput{Kind::keyDown, 50, 0, false, false}));
}

TEST_F(EventTaps, AreGivenBackAtOnceAndSaySo) {
    std::vector<bool> listenerHeard;
    std::vector<bool> filterHeard;
    listen.onDisabled = [&](bool reenabled) { listenerHeard.push_back(reenabled); };
    active.onDisabled = [&](bool reenabled) { filterHeard.push_back(reenabled); };
    listen.start();
    active.start();
    macos_fakes::disableTap(0, kCGEventTapDisabledByTimeout);
    macos_fakes::disableTap(1, kCGEventTapDisabledByUserInput);
    EXPECT_TRUE(eventStream().taps[0].isEnabled && eventStream().taps[1].isEnabled);
    eventStream().refusesEnabling = true;
    macos_fakes::disableTap(0, kCGEventTapDisabledByUserInput);
    macos_fakes::disableTap(1, kCGEventTapDisabledByTimeout);
    EXPECT_THAT(listenerHeard, ElementsAre(true, false));
    EXPECT_THAT(filterHeard, ElementsAre(true, false));
}

TEST_F(EventTaps, FilterThatMayNotFilterOrCannotKeepUpIsNotPutBack) {
    std::vector<bool> heard;
    active.onDisabled = [&](bool reenabled) { heard.push_back(reenabled); };
    active.start();
    macos_fakes::disableTap(0, kCGEventTapDisabledByTimeout);
    macos_fakes::advance(2);
    macos_fakes::disableTap(0, kCGEventTapDisabledByTimeout);
    EXPECT_FALSE(eventStream().taps[0].isEnabled) << "twice in a short time";
    macos_fakes::advance(10);
    active.check();
    EXPECT_TRUE(eventStream().taps[0].isEnabled) << "taken away without a word";
    active.check();
    eventStream().isTrusted = false;
    macos_fakes::advance(10);
    active.check();
    macos_fakes::disableTap(0, kCGEventTapDisabledByUserInput);
    EXPECT_FALSE(eventStream().taps[0].isEnabled);
    EXPECT_THAT(heard, ElementsAre(true, false, true, false, false));
}

TEST_F(EventTaps, ATapThatHearsNothingIsNoTap) {
    eventStream().refusesEnabling = true;
    EXPECT_THROW(listen.start(), TapFailure);
    EXPECT_EQ(failureOfStart(), TapFailure::Kind::creationFailed);
    EXPECT_EQ(eventStream().tapsCreated, 2);
    EXPECT_THAT(eventStream().taps, IsEmpty());
    eventStream().refusesEnabling = eventStream().mayListen = eventStream().isTrusted = false;
    EXPECT_THROW(listen.start(), TapFailure);
    EXPECT_EQ(eventStream().tapsCreated, 2) << "the system would ask for the permission by itself";
    eventStream().mayListen = true;
    listen.start();
    eventStream().taps[0].isEnabled = false;
    std::vector<bool> heard;
    listen.onDisabled = [&](bool reenabled) { heard.push_back(reenabled); };
    listen.check();
    EXPECT_THAT(heard, ElementsAre(true));
}

TEST_F(EventTaps, FailuresLeaveNothingBehindAndEachReasonIsLoggedOnce) {
    const auto failTwice = [&](TapFailure::Kind kind) {
        EXPECT_EQ(failureOfStart(), kind);
        EXPECT_EQ(failureOfStart(), kind);
    };
    eventStream().isTrusted = false;
    failTwice(TapFailure::Kind::accessibilityMissing);
    eventStream().isTrusted = true;
    eventStream().refusesTaps = true;
    EXPECT_THROW(listen.start(), TapFailure);
    failTwice(TapFailure::Kind::creationFailed);
    eventStream().mayListen = false;
    failTwice(TapFailure::Kind::creationFailed);
    eventStream().refusesTaps = false;
    macos_fakes::refusePortSources(true);
    EXPECT_THROW(listen.start(), TapFailure);
    failTwice(TapFailure::Kind::creationFailed);
    EXPECT_THAT(eventStream().taps, IsEmpty());
    macos_fakes::refusePortSources(false);
    EXPECT_EQ(failureOfStart(), std::nullopt);
    EXPECT_THAT(
        log.lines,
        ElementsAre(
            "error ActiveTap: ActiveTap start failed: accessibility not trusted (AXIsProcessTrusted=false)",
            "error ActiveTap: ActiveTap start failed: CGEvent.tapCreate returned nil (inputMonitoring=true)",
            "error ActiveTap: ActiveTap start failed: CGEvent.tapCreate returned nil (inputMonitoring=false)",
            "error ActiveTap: ActiveTap start failed: could not create run loop source",
            "info ActiveTap: ActiveTap started after a failure"));
}

TEST_F(EventTaps, KnowTheEventsThatWePosted) {
    std::vector<bool> synthetic;
    listen.onEvent = [&](const RawEvent& event) { synthetic.push_back(event.synthetic); };
    active.onInput = [&](const ShortcutInput& input) {
        synthetic.push_back(input.synthetic);
        return false;
    };
    listen.start();
    active.start();
    EXPECT_TRUE(LiveGuestKeySender().send({49, {ModifierKey::leftShift}}));
    ASSERT_EQ(eventStream().posted.size(), 4U);
    deliver(kCGEventKeyDown, {.userData = eventStream().posted.front().userData});
    deliver(kCGEventKeyDown, {.userData = synthetic_events::marker() - 1});
    EXPECT_THAT(synthetic, ElementsAre(true, true, false, false));
}

TEST_F(EventTaps, GuestKeyIsPostedWithPausesInWhichTheLoopRuns) {
    const double start = macos_fakes::now();
    bool didRun = false;
    macos_fakes::after(0.015, [&] { didRun = true; });
    EXPECT_TRUE(LiveGuestKeySender().send({49, {ModifierKey::leftShift}}));
    EXPECT_TRUE(didRun);
    EXPECT_NEAR(macos_fakes::now() - start, 0.040, 1e-6);
    std::vector<std::tuple<int, bool, CGEventFlags>> keys;
    for (std::size_t index = 0; index < eventStream().posted.size(); ++index) {
        const macos_fakes::PostedEvent& event = eventStream().posted[index];
        keys.emplace_back(event.keyCode, event.isDown, event.flags);
        EXPECT_EQ(event.location, kCGHIDEventTap);
        EXPECT_EQ(event.userData, synthetic_events::marker());
        EXPECT_NEAR(event.time - start, 0.010 * static_cast<double>(index), 1e-6);
    }
    EXPECT_THAT(keys, ElementsAre(std::tuple(56, true, 0x20002), std::tuple(49, true, 0x20002),
                                  std::tuple(49, false, 0x20002), std::tuple(56, false, 0)));
}

TEST_F(EventTaps, GuestKeyThatCannotBePostedWholeIsNotPostedAtAll) {
    eventStream().isTrusted = false;
    EXPECT_FALSE(LiveGuestKeySender().send({49, {}}));
    eventStream().isTrusted = true;
    eventStream().eventsUntilRefusal = 3;
    EXPECT_FALSE(LiveGuestKeySender().send({49, {ModifierKey::leftShift}}));
    EXPECT_THAT(eventStream().posted, IsEmpty());
}

} // namespace
} // namespace hopsel
