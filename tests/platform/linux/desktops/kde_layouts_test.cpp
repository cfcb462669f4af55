// KDE's keyboard daemon is played here, on a bus of the test's own, so that it can answer late, wrongly or
// never.
#include "platform/linux/desktops/kde_layouts.h"

#include "platform/linux/bus/bus_address.h"
#include "session/private_bus.h"
#include "support/framework_watch.h"
#include "support/played_object.h"

namespace hopsel::test {
namespace {

using Told = QList<Row<QString, QString, QString>>; // layout, label, name

class KdeDaemon final : public PlayedObject {
  public:
    explicit KdeDaemon(const session::PrivateBus& bus)
        : PlayedObject(bus.address(), "org.kde.keyboard", "/Layouts") {
        behave();
    }
    void behave() {
        answers["getLayoutsList"] = [this](const auto& call) { return call.createReply(inVariant(layouts)); };
        answers["getLayout"] = [this](const auto& call) { return call.createReply(current); };
        answers["setLayout"] = [this](const auto& call) {
            change(call.arguments().constFirst().toUInt());
            return call.createReply(true);
        };
    }
    void change(uint index) {
        current = index;
        tell("layoutChanged", {index});
    }
    void tell(const QString& member, const QVariantList& arguments = {}) {
        signal("/Layouts", "org.kde.KeyboardLayouts", member, arguments);
    }
    void changeList(const Told& told) {
        layouts = told;
        tell("layoutListChanged");
    }

    Told layouts{{"us", "", "English (US)"}, {"us", "dvo", "English (Dvorak)"}, {"ru", "ru", "Russian"}};
    uint current = 0;
};

class KdeLayoutsTest : public testing::Test {
  protected:
    session::PrivateBus bus;
    KdeDaemon daemon{bus};
    KdeLayouts layouts{std::make_shared<BusLink>(bus_address::session)};
    FrameworkWatch watch{layouts};
};

TEST_F(KdeLayoutsTest, ListAndSwitchAndFollowTheDaemon) {
    EXPECT_FALSE(layouts.isInCharge());
    ASSERT_TRUE(watch.comesInCharge());
    const std::vector<InputSourceInfo> expected{{"kde:us", "English (US)", "KDELayout", {"en"}, true},
                                                {"kde:us:dvo", "English (Dvorak)", "KDELayout", {"en"}, true},
                                                {"kde:ru", "Russian", "KDELayout", {"ru"}, true}};
    EXPECT_EQ(layouts.enabledKeyboardSources(), expected);
    EXPECT_EQ(layouts.currentID(), "kde:us");
    EXPECT_EQ(layouts.select("kde:us:dvo"), accepted);
    EXPECT_TRUE(watch.becomesCurrent("kde:us:dvo"));
    EXPECT_EQ(layouts.select("kde:us#2"), notFound);
    daemon.change(2);
    EXPECT_TRUE(watch.becomesCurrent("kde:ru"));
    daemon.change(2);
    daemon.tell("layoutChanged", {"2"});
    daemon.tell("layoutListChanged");
    daemon.answers["setLayout"] = [&](const QDBusMessage& call) {
        daemon.current = 0; // what it does not tell is read back
        return call.createReply(true);
    };
    EXPECT_EQ(layouts.select("kde:us"), accepted);
    EXPECT_TRUE(watch.becomesCurrent("kde:us"));
    EXPECT_EQ(watch.inCharge, 1);
    EXPECT_EQ(watch.sources, 0);
    EXPECT_EQ(watch.selected, 3);
    EXPECT_EQ(layouts.refusal(), std::nullopt);
}

TEST_F(KdeLayoutsTest, SwitchThatIsTakenBackAtOnceIsVerified) {
    ASSERT_TRUE(watch.comesInCharge());
    daemon.answers["setLayout"] = [this](const auto& call) {
        daemon.change(call.arguments().constFirst().toUInt());
        daemon.change(0);
        return call.createReply(true);
    };
    LiveInputSourceService service({std::shared_ptr<void>(), &layouts}, uptimeSeconds, runFor);
    for (int round = 0; round < 10; ++round) {
        EXPECT_TRUE(service.switchTo("kde:ru").verified) << round;
        EXPECT_TRUE(watch.becomesCurrent("kde:us"));
        EXPECT_TRUE(service.hasBeenCurrent());
    }
}

TEST_F(KdeLayoutsTest, IdentifiersSurviveAnotherOrderAlsoInTheMiddleOfASwitch) {
    ASSERT_TRUE(watch.comesInCharge());
    daemon.calls.clear();
    daemon.changeList({{"ru", "", ""}, {"us", "", ""}, {"us", "dvo", ""}, {"us", "dvo", ""}});
    ASSERT_TRUE(daemon.isAsked("getLayoutsList"));
    EXPECT_EQ(layouts.select("kde:us:dvo"), accepted);
    EXPECT_TRUE(watch.becomesCurrent("kde:us:dvo"));
    EXPECT_EQ(daemon.current, 2U) << "its position in the new list";
    EXPECT_EQ(watch.ids(), (Strings{"kde:ru", "kde:us", "kde:us:dvo", "kde:us:dvo#2"}));
    EXPECT_EQ(watch.sources, 1);
}

// The label of a variant is that of its layout unless the user gave it another.
TEST_F(KdeLayoutsTest, VariantsWithTheSameLabelStayThemselvesInAnotherOrder) {
    ASSERT_TRUE(watch.comesInCharge());
    daemon.changeList(
        {{"us", "us", "English (US)"}, {"us", "us", "English (Dvorak)"}, {"ru", "ru", "Russian"}});
    EXPECT_TRUE(watch.lists({"kde:us", "kde:us(dvorak)", "kde:ru"}));
    daemon.changeList({{"us", "us", "English (US) - English (Dvorak)"}, {"us", "us", "English (US)"}});
    EXPECT_TRUE(watch.lists({"kde:us(dvorak)", "kde:us"}));
    EXPECT_EQ(layouts.select("kde:us"), accepted);
    EXPECT_TRUE(watch.becomesCurrent("kde:us"));
    EXPECT_EQ(daemon.current, 1U);
}

TEST_F(KdeLayoutsTest, WhateverIsNoYesIsARefusal) {
    ASSERT_TRUE(watch.comesInCharge());
    for (const Answer& answer : {replyWith(false), replyWith("yes"), replyWithError()}) {
        daemon.answers["setLayout"] = answer;
        EXPECT_EQ(layouts.select("kde:ru"), accepted);
        EXPECT_TRUE(watch.isRefused(refused));
    }
    daemon.answers["setLayout"] = replyWith(true); // and does not obey
    EXPECT_EQ(layouts.select("kde:ru"), accepted);
    EXPECT_TRUE(watch.isRefused(refused)) << "or the next toggle would start from Russian";
    EXPECT_EQ(layouts.currentID(), "kde:us");
    EXPECT_EQ(watch.selected, 0);
}

TEST_F(KdeLayoutsTest, DeathInTheMiddleOfASwitchEndsItAndLateAnswersDoNotCount) {
    ASSERT_TRUE(watch.comesInCharge());
    KdeDaemon next(bus);
    next.layouts = {{"kr", "", "Korean"}};
    daemon.answers.erase("setLayout");
    EXPECT_EQ(layouts.select("kde:ru"), accepted);
    ASSERT_TRUE(daemon.isAsked("setLayout"));
    daemon.disappear();
    EXPECT_TRUE(watch.isRefused(gone));
    ASSERT_TRUE(watch.comesInCharge());
    EXPECT_EQ(watch.inCharge, 3) << "there, gone and there again";
    EXPECT_EQ(watch.ids(), Strings{"kde:kr"});
    EXPECT_EQ(layouts.select("kde:kr"), accepted);
    daemon.answerWaiting(0, false);
    daemon.tell("layoutChanged", {7U});
    EXPECT_TRUE(staysFalse([&] { return layouts.refusal() || layouts.currentID() != "kde:kr"; }));

    next.answers.erase("setLayout");
    EXPECT_EQ(layouts.select("kde:kr"), accepted);
    bus.kill();
    EXPECT_TRUE(watch.isRefused(gone));
    EXPECT_EQ(layouts.select("kde:kr"), gone);
    const session::PrivateBus nextBus;
    const KdeDaemon last(nextBus);
    EXPECT_EQ(layouts.retries(), InputFramework::Retries::never);
    EXPECT_TRUE(watch.comesInCharge());
}

TEST_F(KdeLayoutsTest, AnythingForAListGivesOneThatIsSafeToShow) {
    ASSERT_TRUE(watch.comesInCharge());
    daemon.current = 4'000'000'000U;
    daemon.changeList({{"a\nb\u200b", QString(QChar(0xd800)), QString(100'000, u'x')}, {"", "", "y"}});
    EXPECT_TRUE(watch.lists({"kde:a b:?", "kde:y"}));
    EXPECT_EQ(layouts.enabledKeyboardSources()[0].name, std::string(64, 'x'));
    EXPECT_EQ(layouts.currentID(), std::nullopt);
    daemon.changeList(Told(50'000, {"us", "", ""}));
    EXPECT_TRUE(runLoopUntil([&] { return watch.ids().size() == 64; }));

    auto retries = InputFramework::Retries::whileUsed; // a list without names is one: the next is told
    for (const Answer& wrong : {replyWith(inVariant(Told{{"", "", ""}})), replyWith("us"),
                                replyWith(QStringList{"us", "ru"}), replyWith(7)}) {
        daemon.answers["getLayoutsList"] = wrong;
        daemon.tell("layoutListChanged");
        EXPECT_TRUE(watch.comesInCharge(false));
        daemon.behave();
        EXPECT_EQ(layouts.retries(), retries);
        retries = InputFramework::Retries::always;
        layouts.retry();
        ASSERT_TRUE(watch.comesInCharge());
    }
}

} // namespace
} // namespace hopsel::test
