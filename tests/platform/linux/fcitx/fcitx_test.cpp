// A real Fcitx5, and a real text field in which a user types.
#include "platform/linux/fcitx/fcitx_rig.h"
#include "platform/linux/fcitx/played_fcitx.h"
#include "session/text_field.h"
#include "session/x_server.h"

using namespace hopsel;
using namespace hopsel::session;
using namespace hopsel::test;

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
    QDBusConnection connection = connect();
    std::unique_ptr<TextField> field;
};

TEST_F(Fcitx, ListsItsGroupAndFollowsEveryChangeOfIt) {
    start();
    const std::vector<InputSourceInfo> expected{
        {english, "Keyboard - English (US)", "FcitxInputMethod", {"en"}, true},
        {korean, "한글", "FcitxInputMethod", {"ko"}, true}};
    EXPECT_EQ(sources->enabledKeyboardSources(), expected);
    EXPECT_TRUE(runLoopUntil([this] { return watch.sources == 1 && watch.inCharge == 1; }));
    const auto setGroup = [this](const QString& group, const GroupMembers& members) {
        ask("SetInputMethodGroupInfo", {group, "us", inVariant(members)});
    };
    setGroup("Default", {{"hangul", ""}, {"keyboard-de", ""}});
    EXPECT_TRUE(watch.lists({korean, "fcitx:keyboard-de"}));
    ask("AddInputMethodGroup", {"Other"});
    setGroup("Other", {{"keyboard-ru", ""}});
    ask("SwitchInputMethodGroup", {"Other"});
    EXPECT_TRUE(reach([this] { return watch.ids() == Strings{"fcitx:keyboard-ru"}; }));
}

TEST_F(Fcitx, SwitchesTheTextFieldAndSaysSoWhenThereIsNone) {
    start();
    EXPECT_EQ(service.switchTo(korean).result, noField);
    startWithField();
    EXPECT_EQ(ask("CurrentInputMethod"), "keyboard-us"); // what was refused did not happen later
    for (const char* id : {korean, english, korean, korean}) {
        EXPECT_TRUE(service.switchTo(id).verified) << id;
        EXPECT_EQ("fcitx:" + ask("CurrentInputMethod").toString().toStdString(), id);
    }
    EXPECT_EQ(service.switchTo("fcitx:keyboard-de").result, notFound);
    EXPECT_TRUE(runLoopUntil([this] { return watch.selected > 0; }));
}

TEST_F(Fcitx, IsFollowedWhenOthersSwitch) {
    PlayedObject tray(session.bus().address(), "org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher");
    tray.answers["RegisterStatusNotifierItem"] = replyWith();
    startWithField();
    ASSERT_TRUE(reach([this] { return sources->currentID() == english; }));
    ASSERT_TRUE(tray.isAsked("RegisterStatusNotifierItem"));
    switchFromOutside("hangul"); // told by the icon in the tray
    EXPECT_TRUE(watch.becomesCurrent(korean));
    {
        const PlayedObject panel(session.bus().address(), "org.kde.impanel", "/org/kde/impanel");
        ASSERT_TRUE(runLoopUntil([this] { return ask("CurrentUI") == "kimpanel"; }));
        switchFromOutside("keyboard-us"); // told by the panel, which hides the icon
        EXPECT_TRUE(watch.becomesCurrent(english));
    }
    tray.disappear();
    switchFromOutside("hangul"); // told by nobody, but asked as a trigger goes down
    sources->askCurrent();
    EXPECT_TRUE(watch.becomesCurrent(korean));
}

TEST_F(Fcitx, NeverLeavesASwitchWaitingWhenItDiesInTheMiddle) {
    for (int round = 0; round < 100; ++round) {
        startWithField();
        expectSwitchEndsWithDaemon(service, session.daemon(), round, korean, english);
        session.killDaemon();
        ASSERT_TRUE(watch.comesInCharge(false));
        EXPECT_EQ(watch.ids(), Strings{});
        EXPECT_EQ(sources->select(korean), gone);
    }
}

TEST_F(Fcitx, ComesBackWithARestartedBusThoughItHungWhenTheOldOneWent) {
    startWithField();
    session.daemon().kill(SIGSTOP);
    EXPECT_EQ(sources->select(korean), accepted);
    session.bus().kill();
    EXPECT_TRUE(reach([this] { return sources->refusal() == gone && !sources->isInCharge(); }));
    session.killDaemon();
    field.reset();
    session.bus().restart();
    connection = connect();
    startWithField();
    EXPECT_TRUE(service.switchTo(korean).verified);
    EXPECT_EQ(ask("CurrentInputMethod"), "hangul");
}

} // namespace
