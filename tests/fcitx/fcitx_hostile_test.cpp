// A Fcitx5 that answers late, wrongly, hugely or not at all.
#include "fcitx/fcitx_rig.h"
#include "fcitx/played_fcitx.h"

#include <set>

using namespace hopsel;
using namespace hopsel::test;

namespace {

class HostileFcitx : public FcitxRig {
  protected:
    /// Keeps the calls of the method unanswered, for the test to answer later.
    void hold(const QString& method) {
        fcitx.answers[method] = [this](const QDBusMessage& call, const QDBusConnection&) {
            held.push_back(call);
        };
    }
    void answerHeld(std::size_t index, const QVariantList& arguments) const {
        connection.send(held.at(index).createReply(arguments));
    }
    bool waitForHeld(std::size_t count) const {
        return runLoopUntil([&] { return held.size() >= count; });
    }

    PlayedFcitx fcitx{connection};
    std::vector<QDBusMessage> held;
};

TEST_F(HostileFcitx, isNotInChargeUntilItsListIsAsItShouldBe) {
    const QVariant members = QVariant::fromValue(fcitx.members);
    const struct {
        const char* method;
        Answer answer;
    } faults[] = {
        {"CurrentInputMethodGroup", replyWith({})},
        {"CurrentInputMethodGroup", replyWith({7})},
        {"CurrentInputMethodGroup", replyWith({QString(100000, 'x')})},
        {"InputMethodGroupInfo", replyWith({"us", QStringList{"hangul"}})},
        {"InputMethodGroupInfo", replyWith({"us", members, 1})},
        {"AvailableInputMethods", replyWith({members})},
        {"AvailableInputMethods", replyWithError()},
    };
    const auto isNotInCharge = [this] { return !sources->isInCharge(); };
    for (const auto& fault : faults) {
        fcitx.disappear();
        ASSERT_TRUE(runLoopUntil(isNotInCharge));
        fcitx.behave();
        fcitx.answers[fault.method] = fault.answer;
        fcitx.calls.clear();
        fcitx.appear();
        ASSERT_TRUE(runLoopUntil([&] { return fcitx.calls[fault.method] > 0; }));
        EXPECT_FALSE(staysFalse(isNotInCharge)) << fault.method;
        EXPECT_EQ(sources->select(korean), notFound);
        fcitx.behave();
        EXPECT_TRUE(reach([this] { return sources->isInCharge(); })) << fault.method;
    }
}

TEST_F(HostileFcitx, listsEachNamedMethodOnceAndNotTooMany) {
    fcitx.members = {{"pinyin", ""}, {"", ""},       {"a\nb", ""},
                     {"hangul", ""}, {"pinyin", ""}, {QString(5000, 'x'), ""}};
    for (int i = 0; i < 20000; ++i) fcitx.members.append({"m" + QString::number(i % 4000), ""});
    fcitx.behave();
    AvailableMethods available(30000, {"pinyin", "Pinyin", "", "", "", ""});
    available.front() = {"pinyin", "Pinyin", QString(5000, 'n'), "", "", "zh_CN"};
    fcitx.answers["AvailableInputMethods"] = replyWith({QVariant::fromValue(available)});
    ASSERT_TRUE(becomeInCharge());
    const auto listed = sources->enabledKeyboardSources();
    EXPECT_EQ(listed.size(), 500U);
    EXPECT_EQ(listed[0],
              (InputSourceInfo{"fcitx:pinyin", std::string(64, 'n'), "FcitxInputMethod", {"zh-CN"}, true}));
    EXPECT_EQ(listed[1].name, "hangul"); // nobody said another
    const std::vector<std::string> all = ids();
    EXPECT_EQ(std::set<std::string>(all.begin(), all.end()).size(), all.size());
}

TEST_F(HostileFcitx, isAskedForItsListWhenItsGroupIsAnother) {
    ASSERT_TRUE(becomeInCharge());
    fcitx.members = {{"pinyin", ""}};
    fcitx.behave();
    fcitx.answers["CurrentInputMethodGroup"] = replyWith({"Other"});
    EXPECT_TRUE(reach([this] { return ids() == std::vector<std::string>{"fcitx:pinyin"}; }));
}

TEST_F(HostileFcitx, isJudgedByWhatItsSwitchCameTo) {
    const auto nothing = [](const QDBusMessage&, const QDBusConnection&) {};
    const auto switchAndRefuse = [this](const QDBusMessage& call, const QDBusConnection& link) {
        fcitx.current = "hangul";
        replyWithError()(call, link);
    };
    const auto switchLater = [this](const QDBusMessage& call, const QDBusConnection& link) {
        fcitx.current = fcitx.calls["SetCurrentIM"] < 5 ? "" : "hangul"; // between two programs
        link.send(call.createReply());
    };
    const auto loseField = [this](const QDBusMessage& call, const QDBusConnection& link) {
        fcitx.current.clear();
        link.send(call.createReply());
    };
    const struct {
        const char* name;
        std::map<QString, Answer> answers;
        SelectResult result;
        bool isVerified;
    } cases[] = {
        {"well", {}, selected, true},
        {"success without effect", {{"SetCurrentIM", replyWith({})}}, selected, false},
        {"silence", {{"SetCurrentIM", nothing}, {"CurrentInputMethod", nothing}}, selected, false},
        {"a number for a method", {{"CurrentInputMethod", replyWith({7})}}, selected, false},
        {"an error", {{"SetCurrentIM", replyWithError()}}, refused, false},
        {"an error and yet effect", {{"SetCurrentIM", switchAndRefuse}}, selected, true},
        {"a text field that comes", {{"SetCurrentIM", switchLater}}, selected, true},
        {"a text field that goes", {{"SetCurrentIM", loseField}}, noField, false},
        {"a state that is a text",
         {{"SetCurrentIM", loseField}, {"State", replyWith({"0"})}},
         selected,
         false},
    };
    ASSERT_TRUE(becomeInCharge());
    for (const auto& scenario : cases) {
        fcitx.behave();
        fcitx.current = "hangul"; // as read before, which must not pass for success
        ASSERT_TRUE(reach(isCurrent(korean)));
        fcitx.current = "keyboard-us";
        fcitx.calls.clear();
        for (const auto& [method, answer] : scenario.answers) fcitx.answers[method] = answer;
        const SwitchOutcome outcome = switchTo(korean);
        EXPECT_EQ(outcome.result, scenario.result) << scenario.name;
        EXPECT_EQ(outcome.verified, scenario.isVerified) << scenario.name;
        EXPECT_LE(fcitx.calls["CurrentInputMethod"], 60) << scenario.name;
    }
}

TEST_F(HostileFcitx, isNotHeardWhenItAnswersAnOlderSelection) {
    ASSERT_TRUE(becomeInCharge() && runLoopUntil(isCurrent(english)));
    hold("CurrentInputMethod");
    sources->retry();
    sources->select(korean);
    ASSERT_TRUE(waitForHeld(2));
    answerHeld(0, {"hangul"}); // to what was asked before
    EXPECT_TRUE(staysFalse(isCurrent(korean)));
    sources->select(english);
    ASSERT_TRUE(waitForHeld(3));
    answerHeld(1, {"hangul"});
    EXPECT_TRUE(staysFalse([this] { return sources->currentID().has_value(); }));
    answerHeld(2, {"keyboard-us"});
    EXPECT_TRUE(runLoopUntil(isCurrent(english)));
}

TEST_F(HostileFcitx, isNotHeardWhenAnotherHasTakenItsPlace) {
    hold("AvailableInputMethods");
    ASSERT_TRUE(waitForHeld(1));
    fcitx.disappear();
    PlayedFcitx next(connect());
    ASSERT_TRUE(becomeInCharge());
    answerHeld(0, {QVariant::fromValue(AvailableMethods{})});
    EXPECT_TRUE(staysFalse([this] { return sources->enabledKeyboardSources().at(1).name != "한글"; }));
    EXPECT_EQ(chargeChanges, 1);
}

} // namespace
