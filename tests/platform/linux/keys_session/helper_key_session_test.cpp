// The program's end of the key helper: what reaches the engine, what is answered, and what is said when there
// is no helper. Helpers are played; one is the real one.
#include "platform/linux/keys_helper/session/helper_key_session.h"
#include "platform/linux/keys_helper/session/helper_words.h"
#include "platform/linux/keys_session/played_helper.h"
#include "support/fakes/engine_fakes.h"
#include "support/qt_waiting.h"

#include <QFile>
#include <QTemporaryDir>
#include <filesystem>
#include <gtest/gtest.h>
#include <optional>
#include <set>
#include <sys/stat.h>

namespace hopsel {
namespace {

using test::runLoopUntil;

constexpr double now = 100;
constexpr std::size_t leftControl = 6;
constexpr std::size_t rightAlt = 3;

ShortcutKey controlSpace() { return ShortcutKey::fromStorageString("49|leftControl").value(); }

/// The engine's part, which notes what it is told.
class HelperKeys : public testing::Test {
  protected:
    HelperKeys() { listen(); }

    void listen() {
        keys = std::make_unique<HelperKeySession>(
            HelperPlaces{.socket = helper.path(), .program = {}}, [] { return now; }, log);
        keys->listenSource()->onEvent = [this](const RawEvent& event) { events.push_back(event); };
        keys->listenSource()->onDisabled = [this](bool reenabled) {
            disabled.push_back(reenabled);
            if (!reenabled) keys->listenSource()->stop();
        };
        keys->shortcutSource()->onDisabled = [this](bool /*reenabled*/) { ++filterLost; };
        keys->shortcutSource()->onInput = [this](const ShortcutInput& input) {
            inputs.push_back(input);
            return swallows;
        };
    }
    void startAll() {
        keys->listenSource()->start();
        keys->shortcutSource()->setShortcuts({controlSpace()});
        keys->shortcutSource()->start();
        ASSERT_TRUE(helper.greet());
        EXPECT_EQ(helper.declared(), std::vector<std::string>{"49|leftControl"});
    }
    bool tells(const std::vector<to_session::Message>& messages, std::size_t eventsThen) {
        helper.tell(messages);
        return runLoopUntil([&] { return events.size() >= eventsThen; });
    }
    std::string failureOfStart() {
        try {
            keys->listenSource()->start();
        } catch (const TapFailure& failure) {
            EXPECT_EQ(keys->listeningFailure(), failure.what());
            return failure.what();
        }
        return {};
    }

    PlayedHelper helper;
    fakes::RecordingLog log;
    std::unique_ptr<HelperKeySession> keys;
    std::vector<RawEvent> events;
    std::vector<ShortcutInput> inputs;
    std::vector<bool> disabled;
    int filterLost = 0;
    bool swallows = true;
};

TEST_F(HelperKeys, ModifiersAndTheRestReachTheEngineWithTheirTimes) {
    int modifiersDown = 0;
    keys->onModifierDown = [&] { ++modifiersDown; };
    startAll();
    ASSERT_TRUE(tells({to_session::Modifier{rightAlt, true, 80'000'000},
                       to_session::Other{to_session::Other::Kind::key},
                       to_session::Other{to_session::Other::Kind::pointer},
                       to_session::Modifier{rightAlt, false, 81'000'000},
                       to_session::Modifier{rightAlt, true, 101'000'000}},
                      5));
    const std::uint64_t held = flagsOf(ModifierSet{ModifierKey::rightOption});
    const std::uint16_t code = keyCode(ModifierKey::rightOption);
    using Type = RawEventType;
    const std::vector<std::tuple<Type, std::uint16_t, std::uint64_t, double>> expected{
        {Type::flagsChanged, code, held, 80},
        {Type::keyDown, 0, held, now},
        {Type::mouseDown, 0, held, now},
        {Type::flagsChanged, code, 0, 81}, // read late it was held for a second all the same
        {Type::flagsChanged, code, held, now}};
    for (std::size_t i = 0; i < expected.size(); ++i)
        EXPECT_EQ(std::tuple(events[i].type, events[i].keyCode, events[i].flags, events[i].timestamp),
                  expected[i])
            << i;
    EXPECT_EQ(modifiersDown, 2);
}

TEST_F(HelperKeys, KeysThatWereHeldBeforeCountAndLostOnesVoidTheTap) {
    startAll();
    helper.tell({to_session::Held{1U << leftControl}, to_session::Held{1U << leftControl}});
    ASSERT_TRUE(tells({to_session::Other{}}, 1));
    EXPECT_EQ(events[0].flags, flagsOf(ModifierSet{ModifierKey::leftControl}));
    EXPECT_EQ(disabled, (std::vector<bool>{true, true})) << "but not for the first word of it";
}

TEST_F(HelperKeys, AMeaningOfTheKeymapGoesBeforeThePlace) {
    startAll();
    const std::unique_ptr<xkb_context, void (*)(xkb_context*)> context(xkb_context_new(XKB_CONTEXT_NO_FLAGS),
                                                                       xkb_context_unref);
    const xkb_rule_names names{"evdev", "pc105", "us", "", "altwin:swap_alt_win"};
    const std::unique_ptr<xkb_keymap, void (*)(xkb_keymap*)> keymap(
        xkb_keymap_new_from_names(context.get(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS), xkb_keymap_unref);
    keys->setKeymap(KeyMeanings(keymap.get()));
    EXPECT_TRUE(helper.declared());
    ASSERT_TRUE(tells({to_session::Modifier{rightAlt, true, 0}}, 1));
    EXPECT_EQ(events[0].keyCode, keyCode(ModifierKey::rightCommand));
}

TEST_F(HelperKeys, QuestionsAreAnsweredUnlessTheKeyHasGoneOn) {
    startAll();
    helper.tell({to_session::Ask{1, controlSpace()}});
    EXPECT_EQ(helper.next(), to_helper::Message(to_helper::Answer{1, true}));
    helper.tell({to_session::Released{49}, to_session::Ask{2, controlSpace()}, to_session::Late{2}});
    swallows = false;
    helper.tell({to_session::Ask{3, controlSpace()}});
    EXPECT_EQ(helper.next(), to_helper::Message(to_helper::Answer{3, false}));
    using Kind = ShortcutInput::Kind;
    const std::uint64_t control = flagsOf(ModifierSet{ModifierKey::leftControl});
    EXPECT_EQ(inputs, (std::vector<ShortcutInput>{{Kind::keyDown, 49, control, false, false},
                                                  {Kind::keyUp, 49, 0, false, false},
                                                  {Kind::keyDown, 49, control, false, false}}));
    keys->shortcutSource()->stop();
    EXPECT_EQ(helper.declared(), std::vector<std::string>{});
    helper.tell({to_session::Ask{4, controlSpace()}});
    EXPECT_EQ(helper.next(), to_helper::Message(to_helper::Answer{4, false}))
        << "a key never waits for nobody";
}

TEST_F(HelperKeys, AFilterThatEndsIsToldOnceAndDeclaredAgain) {
    startAll();
    helper.tell({to_session::Trouble{to_session::Trouble::Kind::lateAnswers, {}}});
    ASSERT_TRUE(runLoopUntil([&] { return filterLost == 1; }));
    EXPECT_EQ(helper.declared(), std::vector<std::string>{});
    keys->shortcutSource()->start();
    EXPECT_EQ(helper.declared(), std::vector<std::string>{"49|leftControl"});
    // A keyboard that somebody else has is no reason to leave the others, and is tried for again.
    helper.tell({to_session::Trouble{to_session::Trouble::Kind::heldElsewhere, "K\x1b[31m"}});
    EXPECT_EQ(helper.declared(), std::vector<std::string>{"49|leftControl"});
    EXPECT_EQ(filterLost, 1);
    ASSERT_FALSE(log.lines.empty());
    EXPECT_NE(log.lines.back().find("\"K?[31m\""), std::string::npos) << log.lines.back();
}

TEST_F(HelperKeys, AHelperThatEndsIsToldAndMayComeBack) {
    startAll();
    helper.hangUp();
    ASSERT_TRUE(runLoopUntil([&] { return !disabled.empty(); }));
    EXPECT_EQ(disabled, std::vector<bool>{false});
    EXPECT_EQ(filterLost, 1);
    EXPECT_EQ(keys->listeningFailure(), "the key helper has ended");
    EXPECT_EQ(failureOfStart(), "") << "it worked before: it may work again";
    ASSERT_TRUE(helper.greet());
    keys->listenSource()->stop();
    EXPECT_EQ(helper.next(), std::nullopt) << "nothing is read for an engine that is off";
}

TEST_F(HelperKeys, WhoIsRefusedIsToldWhyUntilItWorks) {
    keys->listenSource()->start();
    ASSERT_TRUE(helper.isCalled());
    helper.tell({to_session::Trouble{to_session::Trouble::Kind::inactive, {}}});
    helper.hangUp();
    ASSERT_TRUE(runLoopUntil([&] { return disabled == std::vector<bool>{false}; }));
    EXPECT_NE(failureOfStart().find("another session"), std::string::npos);
    EXPECT_FALSE(keys->permissions()->inputMonitoringGranted());
    // That start has called it again: once it has greeted, the next one succeeds.
    ASSERT_TRUE(helper.greet());
    ASSERT_TRUE(runLoopUntil([&] { return keys->permissions()->inputMonitoringGranted(); }));
    EXPECT_EQ(failureOfStart(), "");
    EXPECT_EQ(keys->listeningFailure(), "");
}

TEST_F(HelperKeys, SaysWhatItCannotReadAndWhatItCannotUnderstand) {
    keys->listenSource()->start();
    ASSERT_TRUE(helper.greet());
    helper.tell({to_session::State{.keyboards = 1, .unreadable = 2}});
    ASSERT_TRUE(runLoopUntil([&] { return !log.lines.empty(); }));
    EXPECT_NE(log.lines.back().find("2 of 3 keyboards cannot be read"), std::string::npos);
    helper.tell({to_session::State{.keyboards = 0, .unreadable = 3}});
    ASSERT_TRUE(runLoopUntil([&] { return !disabled.empty(); }));
    EXPECT_EQ(keys->listeningFailure(), "3 of 3 keyboards cannot be read");
    listen();
    keys->listenSource()->start();
    ASSERT_TRUE(helper.isCalled());
    helper.tell({to_session::Welcome{7}});
    ASSERT_TRUE(runLoopUntil([&] { return disabled.size() == 2; }));
    EXPECT_NE(keys->listeningFailure().find("another version (7, not 1)"), std::string::npos);
}

TEST(HelperPlaces, DecideWhichHelperAndNameWhatIsMissing) {
    QTemporaryDir folder;
    fakes::RecordingLog log;
    const auto failureAt = [&](const HelperPlaces& places) -> std::string {
        HelperKeySession keys(places, [] { return now; }, log);
        try {
            keys.listenSource()->start();
        } catch (const TapFailure& failure) {
            return failure.what();
        }
        return {};
    };
    const std::string nowhere = folder.filePath("none").toStdString();
    EXPECT_NE(failureAt({nowhere, {}, nowhere}).find("not installed"), std::string::npos);
    EXPECT_NE(failureAt({nowhere, HOPSEL_KEYS, nowhere}).find("systemctl enable --now hopsel-keys.socket"),
              std::string::npos);
    QFile device(folder.filePath("event0"));
    ASSERT_TRUE(device.open(QIODevice::WriteOnly));
    const HelperPlaces child{nowhere, HOPSEL_KEYS, folder.path().toStdString()};
    EXPECT_TRUE(child.canReadDevices());
    EXPECT_NE(failureAt({nowhere, "/nowhere/hopsel-keys", child.devices}).find("does not start"),
              std::string::npos);
}

/// A pkexec that is played: notes what it is to run, and exits with what the test says.
class PlayedPkexec {
  public:
    explicit PlayedPkexec(const QTemporaryDir& folder)
        : called_(folder.filePath("called")), answer_(folder.filePath("answer")) {
        QFile program(folder.filePath("pkexec"));
        if (!program.open(QIODevice::WriteOnly)) return;
        program.write(
            ("#!/bin/sh\necho \"$@\" >> '" + called_ + "'\nread code < '" + answer_ + "'\nexit $code\n")
                .toUtf8());
        program.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    }
    void answer(int code) const {
        QFile answer(answer_);
        EXPECT_TRUE(answer.open(QIODevice::WriteOnly)); // once somebody asks
        answer.write(QByteArray::number(code) + "\n");
    }
    QString calls() const {
        QFile called(called_);
        return called.open(QIODevice::ReadOnly) ? QString(called.readAll()) : QString();
    }

  private:
    QString called_;
    QString answer_;
};

TEST(HelperSwitch, AsksOnceAndSaysHowItEnded) {
    QTemporaryDir folder;
    const std::string nowhere = folder.filePath("none").toStdString();
    const std::string answerPath = folder.filePath("answer").toStdString();
    ASSERT_EQ(mkfifo(answerPath.c_str(), 0600), 0);
    const PlayedPkexec pkexec(folder);
    const QByteArray path = qgetenv("PATH");
    fakes::RecordingLog log;
    HelperPlaces places{nowhere, HOPSEL_KEYS, nowhere};
    std::optional<WayOut> told;
    const QObject context;
    const auto note = [&](const WayOut& way) { told = way; };

    HelperKeySession bare(places, [] { return now; }, log);
    bare.remedy(&context, note);
    ASSERT_TRUE(told) << "nothing is installed that could be run";
    EXPECT_EQ(told->command, helper_words::enableCommand);

    places.enabler = "/libexec/enable";
    places.socket = folder.filePath("keys.sock").toStdString();
    HelperKeySession keys(places, [] { return now; }, log);
    EXPECT_THROW(keys.listenSource()->start(), TapFailure);
    const auto outcome = [&](int code) {
        told.reset();
        keys.remedy(&context, note);
        keys.remedy(&context, note); // while it is asked
        pkexec.answer(code);
        return runLoopUntil([&] { return told.has_value(); }) ? told->what : "";
    };
    qputenv("PATH", folder.path().toUtf8() + ":" + path);
    const std::set<std::string> different{outcome(126), outcome(127), outcome(1), ""};
    EXPECT_EQ(different.size(), 4U);
    EXPECT_EQ(pkexec.calls(), QString("--disable-internal-agent /libexec/enable\n").repeated(3));

    // It is turned on: what failed before may work now, and goes on without a word.
    told.reset();
    keys.remedy(&context, note);
    const PlayedHelper service;
    std::filesystem::create_symlink(service.path(), places.socket);
    EXPECT_FALSE(keys.permissions()->inputMonitoringGranted());
    pkexec.answer(0);
    EXPECT_TRUE(runLoopUntil([&] { return keys.permissions()->inputMonitoringGranted(); }));
    EXPECT_FALSE(told);
    keys.remedy(&context, note);
    ASSERT_TRUE(told) << "that is not what it lacks";
    EXPECT_FALSE(told->isSaid());
    qputenv("PATH", path);
}

TEST(HelperChild, TheRealHelperGreetsItsParent) {
    QTemporaryDir folder;
    QFile device(folder.filePath("event0"));
    ASSERT_TRUE(device.open(QIODevice::WriteOnly));
    fakes::RecordingLog log;
    HelperKeySession keys({"", HOPSEL_KEYS, folder.path().toStdString()}, [] { return now; }, log);
    keys.listenSource()->start();
    const auto permissions = keys.permissions();
    device.remove(); // so that only a helper that has greeted counts
    EXPECT_TRUE(runLoopUntil([&] { return permissions->inputMonitoringGranted(); }))
        << keys.listeningFailure();
}

} // namespace
} // namespace hopsel
