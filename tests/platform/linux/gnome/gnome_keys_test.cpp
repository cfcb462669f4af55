// The main job on GNOME under Wayland: keys into the real shell, through our extension and the engine, to
// letters in a real field.
#include "core/engine/engine_coordinator.h"
#include "core/platform/input_source_switcher.h"
#include "platform/linux/base/main_loop.h"
#include "platform/linux/gnome/gnome_frontmost_app.h"
#include "platform/linux/gnome/gnome_key_session.h"
#include "platform/linux/gnome/gnome_secure_input.h"
#include "platform/linux/gnome/gnome_shell.h"
#include "platform/linux/sources/linux_input_sources.h"

#include "platform/linux/gnome/gnome_rig.h"
#include "session/text_field.h"
#include "support/bus_links.h"
#include "support/fakes/engine_fakes.h"

#include <algorithm>
#include <csignal>
#include <random>

namespace hopsel::test {
namespace {

enum Key : std::uint8_t {
    escape = 1,
    q = 16,
    leftControl = 29,
    a = 30,
    s = 31,
    leftShift = 42,
    c = 46,
    rightShift = 54,
    leftAlt = 56,
    space = 57,
    rightControl = 97,
    rightAlt = 100,
    leftSuper = 125,
};
const InputSourceRef english{"xkb:us", "English"};
const InputSourceRef russian{"xkb:ru", "Russian"};
const std::uint16_t spaceKey = 49;
const ShortcutKey controlSpace{spaceKey, {ModifierKey::leftControl}};
const ShortcutKey superSpace{spaceKey, {ModifierKey::leftCommand}}; // GNOME's own

class GnomeKeysTest : public testing::Test {
  protected:
    GnomeKeysTest() {
        std::vector<std::unique_ptr<InputFramework>> frameworks;
        frameworks.push_back(std::make_unique<GnomeShell>(extension));
        sources = std::make_shared<LinuxInputSources>(std::move(frameworks), nullptr);
        engine = EngineCoordinator::create({
            .source = keys.listenSource(),
            .shortcutSource = keys.shortcutSource(),
            .service = std::make_shared<LiveInputSourceService>(sources, uptimeSeconds, runFor),
            .secureInput = std::make_shared<GnomeSecureInput>(extension, std::make_shared<NoSecureInput>()),
            .guestKeySender = nullptr,
            .clock = uptimeSeconds,
            .schedule = schedule,
        });
        keys.onHandled = runScheduled;
        engine->setOnEvent([this](const EngineEvent& event) { events.push_back(event); });
        engine->apply(
            {.schemaVersion = 2,
             .rules = {
                 Rule::make(trigger::ModifierTap{ModifierKey::rightOption}, action::Toggle{english, russian}),
                 Rule::make(trigger::Shortcut{controlSpace}, action::Toggle{english, russian})}});
        EXPECT_TRUE(eventually([&] { return sources->enabledKeyboardSources().size() == 3; }));
        engine->refreshSources();
        engine->start();
        EXPECT_TRUE(isFiltering());
    }
    ~GnomeKeysTest() override { engine->stop(); }

    std::size_t switches() const {
        return static_cast<std::size_t>(
            std::count_if(events.begin(), events.end(), [](const EngineEvent& event) {
                return std::holds_alternative<engine_event::Switched>(
                    event); // verified late on a loaded machine
            }));
    }
    bool switchesReach(std::size_t count) {
        return eventually([&] { return switches() >= count; });
    }
    void during(int key, const std::function<void()>& something) {
        gnome.key(key, true);
        something();
        gnome.key(key, false);
    }
    /// A switch that must come comes after everything before it: so nothing else did.
    void expectNoSwitchSince(std::size_t before) {
        gnome.type({rightAlt});
        EXPECT_TRUE(switchesReach(before + 1));
        EXPECT_EQ(switches(), before + 1);
    }
    bool runs() const { return std::holds_alternative<engine_state::Running>(engine->state()); }
    /// Both sources work; the engine starts them again as the program does.
    bool isFiltering() {
        return eventually([&] {
            if (!runs()) engine->start();
            engine->retryShortcutIfNeeded();
            return runs() && engine->shortcutStatus() == ShortcutStatus::running && extension->isOurs();
        });
    }

    GnomeRig gnome;
    fakes::RecordingLog log;
    std::shared_ptr<BusLink> bus = linkTo(gnome.session.busAddress());
    std::shared_ptr<GnomeExtension> extension = std::make_shared<GnomeExtension>(bus, log);
    GnomeKeySession keys{bus, extension, uptimeSeconds, log};
    std::shared_ptr<LinuxInputSources> sources;
    std::shared_ptr<EngineCoordinator> engine;
    std::vector<EngineEvent> events;
};

TEST_F(GnomeKeysTest, TapsAndCombinationsSwitchAndTheFirstLetterIsRight) {
    session::TextField field("wayland");
    std::string text, arrived;
    for (std::size_t round = 1; round <= 200; ++round) {
        const bool isCombination = round % 5 == 0;
        isCombination ? during(leftControl, [&] { gnome.type({space}); }) : gnome.type({rightAlt});
        ASSERT_TRUE(switchesReach(round));
        gnome.type({a});
        text += round % 2 == 1 ? "ф" : "a";
        // One that is still on its way through the input method when the next switch comes is that one's.
        ASSERT_TRUE(field.waitForText(text)) << field.text();
        // The press of the combination is swallowed, its release is not.
        arrived += isCombination ? " +29 -57 -29" : " +100 -100";
        arrived += " +30 -30";
    }
    EXPECT_TRUE(field.waitForKeys(arrived)) << field.keys();
    EXPECT_EQ(switches(), 200U);
}

TEST_F(GnomeKeysTest, OrdinaryUseOfTheTriggerNeverSwitches) {
    session::TextField field("wayland");
    const auto before = switches();
    for (const int key : {leftControl, rightControl, leftSuper, rightAlt, leftAlt})
        during(key, [&] { gnome.type({c}); });
    during(rightAlt, [&] { gnome.click(); });
    during(rightAlt, [&] { gnome.scroll(); });
    during(rightAlt, [&] { gnome.type({leftShift}); });
    during(leftShift, [&] { gnome.type({rightAlt}); });
    during(rightAlt, [&] { during(leftControl, [&] { gnome.type({space}); }); });
    during(leftControl, [&] { during(leftShift, [&] { gnome.type({space}); }); });
    during(rightControl, [&] { gnome.type({space}); });
    gnome.type({leftAlt, leftShift, rightShift, leftControl, space});
    bool isDown = false;
    keys.onModifierDown = [&] { isDown = true; };
    during(rightAlt, [&] {
        EXPECT_TRUE(eventually([&] { return isDown; })) << "from here on it is held";
        const double start = uptimeSeconds();
        runLoopUntil([&] { return uptimeSeconds() - start > 0.51; }); // a long hold is long
    });
    expectNoSwitchSince(before);
    // The other side's combination reaches the program whole.
    const std::string other = " +97 +57 -57 -97";
    gnome.type({s});
    EXPECT_TRUE(field.waitForKeys(" +31 -31")) << field.keys();
    EXPECT_NE(field.keys().find(other), std::string::npos) << field.keys();
}

TEST_F(GnomeKeysTest, NoKeyIsLostOrAddedBesideTheCombinations) {
    session::TextField field("wayland");
    const std::vector<int> ordinary{q, a, s, c, space, leftShift, rightControl, rightShift};
    std::mt19937 random(19); // NOLINT(cert-msc51-cpp): the same keys in every run
    std::vector<int> down;
    std::string typed;
    const auto toggle = [&](int key) {
        const auto held = std::find(down.begin(), down.end(), key);
        const bool isPress = held == down.end();
        isPress ? down.push_back(key) : static_cast<void>(down.erase(held));
        gnome.key(key, isPress);
        typed += (isPress ? " +" : " -") + std::to_string(key);
    };
    for (int i = 0; i < 1000; ++i) toggle(ordinary[random() % ordinary.size()]);
    while (!down.empty()) toggle(down.back());
    EXPECT_TRUE(field.waitForKeys(typed, std::chrono::seconds(30))) << typed << "\n" << field.keys();
    EXPECT_EQ(switches(), 0U);
}

TEST_F(GnomeKeysTest, WhatGnomeHoldsIsNamedUntilItIsFree) {
    engine->apply({.schemaVersion = 2,
                   .rules = {Rule::make(trigger::Shortcut{superSpace}, action::Toggle{english, russian}),
                             Rule::make(trigger::Shortcut{controlSpace}, action::Toggle{english, russian})}});
    EXPECT_TRUE(eventually([&] { return engine->unavailableShortcuts() == ShortcutSet{superSpace}; }));
    during(leftControl, [&] { gnome.type({space}); });
    EXPECT_TRUE(switchesReach(1)) << "the other works";
    session::IbusSession::set("/org/gnome/desktop/wm/keybindings/switch-input-source", "@as []");
    EXPECT_TRUE(eventually([&] { return engine->unavailableShortcuts().empty(); }));
    during(leftSuper, [&] { gnome.type({space}); });
    EXPECT_TRUE(switchesReach(2));
}

TEST_F(GnomeKeysTest, PasswordsAndPausesAreLeftAlone) {
    {
        const session::TextField password("wayland", true);
        EXPECT_TRUE(eventually([&] { return gnome.evaluate("Main.inputMethod.content_purpose") == "8"; }));
        gnome.type({rightAlt});
        const auto isSuppressed = [](const EngineEvent& event) {
            return std::holds_alternative<engine_event::SwitchSuppressed>(event);
        };
        EXPECT_TRUE(eventually([&] { return std::any_of(events.begin(), events.end(), isSuppressed); }));
        during(leftControl, [&] { gnome.type({space}); });
    }
    session::TextField field("wayland");
    EXPECT_EQ(switches(), 0U);
    engine->stop();
    during(leftControl, [&] { gnome.type({space}); });
    gnome.type({rightAlt});
    EXPECT_TRUE(field.waitForKeys(" +29 +57 -57 -29 +100 -100")) << field.keys();
    ASSERT_TRUE(isFiltering());
    during(leftControl, [&] { gnome.type({space}); });
    EXPECT_TRUE(switchesReach(1));
    EXPECT_EQ(switches(), 1U);
}

TEST_F(GnomeKeysTest, IsBackAfterTheLockScreenAndAfterTheExtensionWasOff) {
    std::size_t count = 0;
    for (const auto& turn : {std::function([&](bool on) { gnome.setLocked(!on); }),
                             std::function([&](bool on) { gnome.enableExtension(on); })}) {
        gnome.key(leftControl, true);
        gnome.key(space, true); // goes while it is swallowed
        EXPECT_TRUE(switchesReach(++count));
        turn(false);
        EXPECT_TRUE(eventually([&] { return !runs(); }));
        EXPECT_FALSE(keys.permissions()->inputMonitoringGranted());
        engine->start();
        EXPECT_FALSE(keys.listeningFailure().empty());
        gnome.key(space, false);
        gnome.key(leftControl, false);
        gnome.type({rightAlt});
        turn(true);
        ASSERT_TRUE(isFiltering());
        EXPECT_TRUE(keys.listeningFailure().empty());
        gnome.type({rightAlt});
        EXPECT_TRUE(switchesReach(++count));
        during(leftControl, [&] { gnome.type({space}); });
        EXPECT_TRUE(switchesReach(++count));
        EXPECT_EQ(switches(), count);
    }
    EXPECT_TRUE(log.lines.empty()) << log.lines.front();
}

TEST_F(GnomeKeysTest, TheApplicationInFrontIsTold) {
    GnomeFrontmostApp front(extension);
    std::vector<std::optional<std::string>> told;
    front.onChange = [&](const std::optional<std::string>& name) { told.push_back(name); };
    front.start();
    {
        const session::TextField field("wayland");
        EXPECT_TRUE(eventually([&] { return told.size() == 2; }));
        EXPECT_EQ(told.back(), "text_field.py");
    }
    EXPECT_TRUE(eventually([&] { return !told.back(); })) << "no window is left";
    const session::TextField next("wayland");
    EXPECT_TRUE(eventually([&] { return told.back() == "text_field.py"; }));
    gnome.enableExtension(false);
    EXPECT_TRUE(eventually([&] { return !told.back(); }));
    EXPECT_EQ(told.front(), std::nullopt);
}

TEST_F(GnomeKeysTest, TheExtensionIsTurnedOnByAButton) {
    int failures = 0;
    const QObject context;
    const auto press = [&] { keys.remedy(&context, [&](const WayOut& /*way*/) { ++failures; }); };
    press();
    EXPECT_TRUE(eventually([&] { return failures == 1; })) << "it is on: that is not why";
    gnome.enableExtension(false);
    EXPECT_TRUE(eventually([&] { return !runs(); }));
    press();
    EXPECT_TRUE(isFiltering());
    gnome.evaluate("Main.extensionManager.lookup('hopsel-43@app.hopsel.Hopsel').state = 4");
    press();
    EXPECT_TRUE(eventually([&] { return failures == 2; })) << "the shell can run neither";
    gnome.session.shell().kill(SIGKILL);
    EXPECT_TRUE(eventually([&] { return !extension->isOurs(); }));
    EXPECT_TRUE(eventually([&] {
        press(); // what was asked of a shell that goes is not answered
        return failures > 2;
    }));
}

TEST_F(GnomeKeysTest, NothingIsSwallowedOnceTheProgramIsGone) {
    session::TextField field("wayland");
    bus->close();
    Caller next(gnome.session.busAddress());
    EXPECT_TRUE(eventually([&] { return next.error("Register").empty(); })) << "it has been told";
    during(leftControl, [&] { gnome.type({space}); });
    EXPECT_TRUE(field.waitForKeys(" +29 +57 -57 -29")) << field.keys();
    EXPECT_EQ(next.error("Listen", {true}), "");
    next.leave();
    EXPECT_TRUE(eventually([&] {
        bus->retry();
        if (extension->needsRetry()) extension->retry();
        return extension->isOurs();
    }));
    ASSERT_TRUE(isFiltering());
    during(leftControl, [&] { gnome.type({space}); });
    EXPECT_TRUE(switchesReach(1));
}

} // namespace
} // namespace hopsel::test
