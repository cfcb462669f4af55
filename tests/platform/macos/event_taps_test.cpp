#include "core/engine/engine_coordinator.h"
#include "platform/macos/keys/active_tap.h"
#include "platform/macos/keys/listen_tap.h"
#include "platform/macos/keys/live_guest_key_sender.h"
#include "platform/macos/macos_test.h"
#include "support/fakes/engine_rig.h"
#include "support/macos/fakes/objects.h"

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

    /// For the listener; true if it started.
    bool listens() {
        try {
            listen.start();
            return true;
        } catch (const TapFailure&) {
            return false;
        }
    }

    fakes::RecordingLog log;
    std::shared_ptr<MacPermissions> permissions = std::make_shared<MacPermissions>();
    ListenTap listen{permissions};
    ActiveTap active{log, permissions};
};

TEST_F(EventTaps, AskForWhatTheyNeedAndNoMoreAndOnlyOnce) {
    int events = 0;
    listen.onEvent = [&](const RawEvent&) { ++events; };
    for (int round = 0; round < 2; ++round) {
        for (int twice = 0; twice < 2; ++twice) {
            listen.start();
            active.start();
        }
        ASSERT_EQ(eventStream().taps.size(), 2U);
        EXPECT_EQ(sourcesOfTest(), 2U);
        for (const macos_fakes::Tap& tap : eventStream().taps) {
            EXPECT_EQ(tap.location, kCGSessionEventTap);
            EXPECT_EQ(tap.placement, kCGHeadInsertEventTap);
            EXPECT_TRUE(tap.isEnabled);
        }
        EXPECT_EQ(eventStream().taps[0].options, kCGEventTapOptionDefault);
        EXPECT_EQ(eventStream().taps[0].mask, 0b1100'0000'0000U);
        EXPECT_EQ(eventStream().taps[1].options, kCGEventTapOptionListenOnly);
        EXPECT_EQ(eventStream().taps[1].mask, 0x0200'1C0AU);
        deliver(kCGEventKeyDown);
        EXPECT_EQ(events, round + 1);
        // Whoever else holds the port, as the loop may: no events come any more.
        const auto port = CfRef<CFMachPortRef>::retain(eventStream().taps[1].port);
        for (int twice = 0; twice < 2; ++twice) {
            listen.stop();
            active.stop();
        }
        EXPECT_EQ(sourcesOfTest(), 0U);
        EXPECT_FALSE(port.get()->isValid);
    }
    ListenTap(permissions).start(); // and released without a stop
    EXPECT_THAT(eventStream().taps, IsEmpty());
}

TEST_F(EventTaps, AreThereOnceAfterAThousandNightsAndRestartsOfTheEngine) {
    EngineCoordinator::Parts parts;
    parts.source = std::make_shared<ListenTap>(permissions);
    parts.shortcutSource = std::make_shared<ActiveTap>(log, permissions);
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

TEST_F(EventTaps, MayBeReleasedByTheirHandlers) {
    auto listener = std::make_unique<ListenTap>(permissions);
    auto filter = std::make_unique<ActiveTap>(log, permissions);
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
    using Seen = std::tuple<RawEventType, int, std::uint64_t>;
    std::vector<Seen> seen;
    listen.onEvent = [&](const RawEvent& event) {
        seen.emplace_back(event.type, event.keyCode, event.flags);
        EXPECT_DOUBLE_EQ(event.timestamp, macos_fakes::now());
        EXPECT_FALSE(event.synthetic);
    };
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

    EXPECT_THAT(seen, ElementsAre(Seen(RawEventType::keyDown, 0, 0x20002), Seen(RawEventType::keyUp, 0, 0),
                                  Seen(RawEventType::mouseDown, 0, 0), Seen(RawEventType::mouseDown, 0, 0),
                                  Seen(RawEventType::mouseDown, 0, 0),
                                  Seen(RawEventType::flagsChanged, 54, 0x100010)));
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
    std::vector<bool> listenerHeard, filterHeard;
    listen.onDisabled = [&](bool reenabled) { listenerHeard.push_back(reenabled); };
    active.onDisabled = [&](bool reenabled) { filterHeard.push_back(reenabled); };
    listen.start();
    active.start();
    macos_fakes::disableTap(0, kCGEventTapDisabledByTimeout);
    macos_fakes::disableTap(1, kCGEventTapDisabledByUserInput);
    EXPECT_EQ(eventStream().tapsCreated, 3) << "the filter is another one";
    EXPECT_EQ(eventStream().taps[0].options, kCGEventTapOptionDefault) << "and comes first";
    EXPECT_EQ(sourcesOfTest(), 2U);
    EXPECT_TRUE(eventStream().taps[0].isEnabled && eventStream().taps[1].isEnabled);
    eventStream().refusesEnabling = true;
    macos_fakes::disableTap(1, kCGEventTapDisabledByTimeout);
    eventStream().refusesEnabling = false;
    listen.check();
    listen.check();
    EXPECT_THAT(listenerHeard, ElementsAre(true, false, true));
    EXPECT_THAT(filterHeard, ElementsAre(true));
}

TEST_F(EventTaps, ListenerThatHearsNoKeysCountsAsRefusedUntilAGrantShows) {
    auto& stream = eventStream();
    stream.isTrusted = stream.mayListen = false;
    stream.staleTrust = stream.staleListening = false;
    EXPECT_FALSE(listens());
    EXPECT_EQ(stream.tapsCreated, 0) << "the system would ask for the permission by itself";
    permissions->settingsShown();
    EXPECT_FALSE(listens()) << "mouse buttons alone are no ears for keys";
    EXPECT_EQ(stream.tapsCreated, 1);
    stream.refusesList = true;
    EXPECT_FALSE(listens()) << "nothing speaks for it";
    EXPECT_THAT(stream.taps, IsEmpty());
    stream.refusesList = false;
    stream.mayListen = true;
    EXPECT_TRUE(listens()) << "whatever the calls still answer";

    // And the other way round: taken back, while the calls go on saying yes.
    listen.stop();
    stream.mayListen = false;
    stream.staleListening = true;
    EXPECT_FALSE(listens());
    stream.mayListen = true;
    stream.refusesList = true;
    EXPECT_TRUE(listens()) << "the calls count where the list says nothing";
}

TEST_F(EventTaps, WhatIsTakenWithoutAWordIsNoticed) {
    std::vector<bool> heard;
    listen.onDisabled = active.onDisabled = [&](bool reenabled) { heard.push_back(reenabled); };
    const auto checkAfter = [&](void (*harm)(std::size_t), std::size_t tap) {
        harm(tap);
        listen.check();
        active.check();
    };
    listen.start();
    active.start();
    checkAfter([](std::size_t) {}, 0);
    EXPECT_THAT(heard, IsEmpty());
    checkAfter(macos_fakes::invalidateTap, 1);
    EXPECT_THAT(heard, ElementsAre(false)) << "the engine starts both anew, in their order";
    listen.stop();
    active.stop();
    listen.start();
    active.start();
    checkAfter(macos_fakes::deafenTap, 1);
    macos_fakes::advance(10);
    checkAfter(macos_fakes::invalidateTap, 0);
    EXPECT_THAT(heard, ElementsAre(false, false, false, true))
        << "the listener is still deaf, the filter new";
}

TEST_F(EventTaps, FilterThatMayNotFilterIsOutOfTheStreamForGood) {
    auto& stream = eventStream();
    std::vector<bool> heard;
    active.onDisabled = [&](bool reenabled) { heard.push_back(reenabled); };
    active.start();
    stream.staleTrust = true;
    stream.isTrusted = false;
    macos_fakes::disableTap(0, kCGEventTapDisabledByTimeout);
    EXPECT_THAT(stream.taps, IsEmpty()) << "the calls still say that it is trusted";
    EXPECT_EQ(failureOfStart(), TapFailure::Kind::creationFailed);

    stream.isTrusted = true;
    active.start();
    stream.isTrusted = false;
    stream.staleTrust.reset();
    active.check();
    EXPECT_THAT(stream.taps, IsEmpty());
    permissions->requestAccessibility();
    EXPECT_EQ(failureOfStart(), TapFailure::Kind::accessibilityMissing);
    stream.staleTrust = false;
    stream.isTrusted = true;
    EXPECT_EQ(failureOfStart(), std::nullopt) << "granted, though the calls do not know it yet";
    active.check();
    EXPECT_EQ(stream.taps.size(), 1U) << "what was answered at the start says nothing later";
    EXPECT_THAT(heard, ElementsAre(false, false));
}

TEST_F(EventTaps, FilterThatCannotKeepUpRests) {
    std::vector<bool> heard;
    active.onDisabled = [&](bool reenabled) { heard.push_back(reenabled); };
    active.start();
    macos_fakes::disableTap(0, kCGEventTapDisabledByTimeout);
    macos_fakes::advance(2);
    macos_fakes::disableTap(0, kCGEventTapDisabledByTimeout);
    EXPECT_THAT(heard, ElementsAre(true, false)) << "twice in a short time";
    EXPECT_THAT(eventStream().taps, IsEmpty());
    active.start();
    macos_fakes::advance(30);
    macos_fakes::disableTap(0, kCGEventTapDisabledByTimeout);
    for (int minute = 0; minute < 9; ++minute) {
        macos_fakes::advance(60);
        EXPECT_EQ(failureOfStart(), TapFailure::Kind::creationFailed) << "three times within ten minutes";
    }
    macos_fakes::advance(61);
    EXPECT_EQ(failureOfStart(), std::nullopt);
    for (int time = 0; time < 5; ++time) {
        macos_fakes::disableTap(0, kCGEventTapDisabledByTimeout);
        macos_fakes::advance(301);
    }
    EXPECT_THAT(heard, ElementsAre(true, false, false, true, true, true, true, true))
        << "now and then is usual";
}

TEST_F(EventTaps, FailuresLeaveNothingBehindAndEachReasonIsLoggedOnce) {
    const auto failTwice = [&](TapFailure::Kind kind) {
        EXPECT_EQ(failureOfStart(), kind);
        EXPECT_EQ(failureOfStart(), kind);
    };
    eventStream().isTrusted = false;
    failTwice(TapFailure::Kind::accessibilityMissing);
    eventStream().isTrusted = true;
    eventStream().refusesEnabling = true;
    EXPECT_THROW(listen.start(), TapFailure) << "a tap that hears nothing is none";
    eventStream().refusesEnabling = false;
    eventStream().refusesTaps = true;
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

TEST_F(EventTaps, KnowTheGuestKeyThatIsPostedWithPausesInWhichTheLoopRuns) {
    std::vector<bool> synthetic;
    listen.onEvent = [&](const RawEvent& event) { synthetic.push_back(event.synthetic); };
    active.onInput = [&](const ShortcutInput& input) {
        synthetic.push_back(input.synthetic);
        return false;
    };
    listen.start();
    active.start();
    const double start = macos_fakes::now();
    bool didRun = false;
    macos_fakes::after(0.015, [&] { didRun = true; });
    EXPECT_TRUE(LiveGuestKeySender().send({49, {ModifierKey::leftShift}}));
    EXPECT_TRUE(didRun);
    EXPECT_NEAR(macos_fakes::now() - start, 0.040, 1e-6);
    std::vector<std::tuple<int, bool, CGEventFlags>> keys;
    for (const macos_fakes::PostedEvent& event : eventStream().posted) {
        EXPECT_EQ(event.location, kCGHIDEventTap);
        EXPECT_NEAR(event.time - start, 0.010 * static_cast<double>(keys.size()), 1e-6);
        keys.emplace_back(event.keyCode, event.isDown, event.flags);
        synthetic.clear();
        deliver(kCGEventKeyDown, {.userData = event.userData});
        deliver(kCGEventKeyDown, {.userData = event.userData - 1});
        EXPECT_THAT(synthetic, ElementsAre(true, true, false, false));
    }
    EXPECT_THAT(keys, ElementsAre(std::tuple(56, true, 0x20002), std::tuple(49, true, 0x20002),
                                  std::tuple(49, false, 0x20002), std::tuple(56, false, 0)));

    eventStream().eventsUntilRefusal = 3;
    EXPECT_FALSE(LiveGuestKeySender().send({49, {ModifierKey::leftShift}}));
    eventStream().isTrusted = false;
    EXPECT_FALSE(LiveGuestKeySender().send({49, {}}));
    EXPECT_EQ(eventStream().posted.size(), 4U) << "what cannot be posted whole is not posted at all";
}

} // namespace
} // namespace hopsel
