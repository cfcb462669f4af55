// A real Fcitx5, and a real text field in which a user types.
#include "fcitx/fcitx_rig.h"
#include "fcitx/played_fcitx.h"
#include "session/text_field.h"
#include "session/x_server.h"

#include <QCoreApplication>
#include <QTimer>
#include <csignal>

using namespace hopsel;
using namespace hopsel::session;
using namespace hopsel::test;
using testing::ElementsAre;

namespace {

class Fcitx : public FcitxRig {
  protected:
    Fcitx() { server.startWindowManager(); }
    void start() {
        session.startDaemon();
        ASSERT_TRUE(becomeInCharge());
    }
    void startWithField() {
        if (!sources->isInCharge()) start();
        if (!field) field = std::make_unique<TextField>("fcitx");
        ASSERT_TRUE(runLoopUntil([this] { return ask("State").toInt() != 0; }));
    }
    void kill() {
        session.killDaemon();
        ASSERT_TRUE(runLoopUntil([this] { return !sources->isInCharge(); }));
    }
    /// What Fcitx5 itself answers, asked without the code under test.
    QVariant ask(const QString& method, const QVariantList& arguments = {}) const {
        auto call = QDBusMessage::createMethodCall("org.fcitx.Fcitx5", "/controller",
                                                   "org.fcitx.Fcitx.Controller1", method);
        call.setArguments(arguments);
        return connection.call(call).arguments().value(0);
    }
    static void switchFromOutside(const char* method) {
        ChildProcess::Options options;
        options.program = "fcitx5-remote";
        options.arguments = {"-s", method};
        runProgram(options);
    }

    XServer server;
    std::unique_ptr<TextField> field;
};

TEST_F(Fcitx, listsItsGroupAndFollowsEveryChangeOfIt) {
    start();
    EXPECT_THAT(
        sources->enabledKeyboardSources(),
        ElementsAre(InputSourceInfo{english, "Keyboard - English (US)", "FcitxInputMethod", {"en"}, true},
                    InputSourceInfo{korean, "한글", "FcitxInputMethod", {"ko"}, true}));
    EXPECT_TRUE(runLoopUntil([this] { return sourcesChanges == 1 && chargeChanges == 1; }));
    const auto setGroup = [this](const QString& group, const GroupMembers& members) {
        ask("SetInputMethodGroupInfo", {group, "us", QVariant::fromValue(members)});
    };
    setGroup("Default", {{"hangul", ""}, {"keyboard-de", ""}});
    EXPECT_TRUE(runLoopUntil([this] { return sourcesChanges == 2; }));
    EXPECT_THAT(ids(), ElementsAre(korean, "fcitx:keyboard-de"));
    ask("AddInputMethodGroup", {"Other"});
    setGroup("Other", {{"keyboard-ru", ""}});
    ask("SwitchInputMethodGroup", {"Other"});
    EXPECT_TRUE(reach([this] { return sourcesChanges == 3; }));
    EXPECT_THAT(ids(), ElementsAre("fcitx:keyboard-ru"));
}

TEST_F(Fcitx, switchesTheTextFieldAndSaysSoWhenThereIsNone) {
    start();
    EXPECT_EQ(switchTo(korean).result, noField);
    startWithField();
    EXPECT_EQ(ask("CurrentInputMethod"), "keyboard-us"); // what was refused did not happen later
    for (const char* id : {korean, english, korean, korean}) {
        EXPECT_TRUE(switchTo(id).verified) << id;
        EXPECT_EQ("fcitx:" + ask("CurrentInputMethod").toString().toStdString(), id);
    }
    EXPECT_EQ(switchTo("fcitx:keyboard-de").result, notFound);
    EXPECT_TRUE(runLoopUntil([this] { return selectedChanges > 0; }));
}

TEST_F(Fcitx, isFollowedWhenOthersSwitch) {
    PlayedObject tray(connection, "org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher");
    tray.answers["RegisterStatusNotifierItem"] = replyWith({});
    startWithField();
    ASSERT_TRUE(reach(isCurrent(english)));
    ASSERT_TRUE(runLoopUntil([&] { return tray.calls["RegisterStatusNotifierItem"] > 0; }));
    switchFromOutside("hangul"); // told by the icon in the tray
    EXPECT_TRUE(runLoopUntil(isCurrent(korean)));
    {
        const PlayedObject panel(connection, "org.kde.impanel", "/org/kde/impanel");
        ASSERT_TRUE(runLoopUntil([this] { return ask("CurrentUI") == "kimpanel"; }));
        switchFromOutside("keyboard-us"); // told by the panel, which hides the icon
        EXPECT_TRUE(runLoopUntil(isCurrent(english)));
    }
    tray.disappear();
    switchFromOutside("hangul"); // told by nobody, but asked as a trigger goes down
    sources->askCurrent();
    EXPECT_TRUE(runLoopUntil(isCurrent(korean)));
}

TEST_F(Fcitx, isGoneWithItsDaemonAndItsBus) {
    EXPECT_EQ(sources->select(korean), gone);
    start();
    kill();
    EXPECT_THAT(ids(), ElementsAre());
    EXPECT_EQ(sources->select(korean), gone);
    sources->retry();
    EXPECT_TRUE(staysFalse([this] { return sources->isInCharge(); }));
    start();
    session.bus().kill();
    EXPECT_TRUE(reach([this] { return !sources->isInCharge(); }));
}

TEST_F(Fcitx, neverLeavesASwitchWaitingWhenItDiesInTheMiddle) {
    int interrupted = 0;
    for (int round = 0; round < 100; ++round) {
        startWithField();
        // Hung at first, so that it dies while it is waited for; or just killed, before, within or after.
        const bool isHung = round % 2 == 0;
        if (isHung) session.daemon().kill(SIGSTOP);
        QTimer::singleShot(isHung ? 20 : round % 4, Qt::PreciseTimer, qApp,
                           [this] { session.daemon().kill(SIGKILL); });
        SwitchOutcome outcome;
        do {
            outcome = switchTo(outcome.requested == korean ? english : korean);
            EXPECT_EQ(outcome.verified, outcome.result == selected);
            EXPECT_LT(outcome.latencyMs, 400);
        } while (outcome.result == selected);
        EXPECT_EQ(outcome.result, gone);
        interrupted += outcome.latencyMs > 1;
        kill();
    }
    EXPECT_GE(interrupted, 50);
}

TEST(FcitxProfile, isNoticedWhereverItIsWritten) {
    const TemporaryFolder home;
    int changes = 0;
    const FcitxProfileWatch watch(home.path() / "config/fcitx5/profile", [&] { ++changes; });
    const auto isNoticed = [&](int count) { return runLoopUntil([&] { return changes == count; }); };
    home.write("config/fcitx5/profile", "one");
    EXPECT_TRUE(isNoticed(1));
    std::filesystem::rename(home.write("config/fcitx5/new", "two"), home.path() / "config/fcitx5/profile");
    EXPECT_TRUE(isNoticed(2));
    home.write("config/fcitx5/config", "another file");
    EXPECT_TRUE(staysFalse([&] { return changes > 2; }));
    std::filesystem::remove_all(home.path() / "config");
    EXPECT_TRUE(isNoticed(3));
    home.write("config/fcitx5/profile", "three");
    EXPECT_TRUE(isNoticed(4));
}

} // namespace
