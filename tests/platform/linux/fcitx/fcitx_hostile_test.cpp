// A Fcitx5 that answers late, wrongly, hugely or not at all.
#include "platform/linux/fcitx/fcitx_rig.h"
#include "platform/linux/fcitx/played_fcitx.h"

#include <set>

using namespace hopsel;
using namespace hopsel::test;

namespace {

class HostileFcitx : public FcitxRig {
  protected:
    PlayedFcitx fcitx{session.bus().address()};
};

TEST_F(HostileFcitx, IsNotInChargeUntilItsListIsAsItShouldBe) {
    const QVariant members = inVariant(fcitx.members);
    const struct {
        const char* method;
        Answer answer;
    } faults[] = {
        {"CurrentInputMethodGroup", replyWith()},
        {"CurrentInputMethodGroup", replyWith(7)},
        {"CurrentInputMethodGroup", replyWith(QString(100000, 'x'))},
        {"InputMethodGroupInfo", replyWith("us", QStringList{"hangul"})},
        {"InputMethodGroupInfo", replyWith("us", members, 1)},
        {"AvailableInputMethods", replyWith(members)},
        {"AvailableInputMethods", replyWithError()},
    };
    for (const auto& fault : faults) {
        SCOPED_TRACE(fault.method);
        fcitx.disappear();
        ASSERT_TRUE(watch.comesInCharge(false));
        fcitx.answers[fault.method] = fault.answer;
        fcitx.calls.clear();
        fcitx.appear();
        ASSERT_TRUE(fcitx.isAsked(fault.method));
        EXPECT_TRUE(staysFalse([this] { return sources->isInCharge(); }));
        EXPECT_EQ(sources->select(korean), notFound);
        fcitx.behave();
        EXPECT_TRUE(reach([this] { return sources->isInCharge(); }));
    }
}

TEST_F(HostileFcitx, ListsEachNamedMethodOnceAndNotTooMany) {
    fcitx.members = {{"pinyin", ""}, {"", ""},       {"a\nb", ""},
                     {"hangul", ""}, {"pinyin", ""}, {QString(5000, 'x'), ""}};
    for (int i = 0; i < 20000; ++i) fcitx.members.append({"m" + QString::number(i % 4000), ""});
    fcitx.behave();
    AvailableMethods available(30000, {"pinyin", "Pinyin", "", "", "", "", false});
    available.front() = {"pinyin", "Pinyin", QString(5000, 'n'), "", "", "zh_CN", false};
    fcitx.answers["AvailableInputMethods"] = replyWith(inVariant(available));
    ASSERT_TRUE(becomeInCharge());
    const auto listed = sources->enabledKeyboardSources();
    EXPECT_EQ(listed.size(), 500U);
    EXPECT_EQ(listed[0],
              (InputSourceInfo{"fcitx:pinyin", std::string(64, 'n'), "FcitxInputMethod", {"zh-CN"}, true}));
    EXPECT_EQ(listed[1].name, "hangul"); // nobody said another
    const Strings all = watch.ids();
    EXPECT_EQ(std::set<std::string>(all.begin(), all.end()).size(), all.size());
}

TEST_F(HostileFcitx, TakesTheLabelForTheLanguageThatItDoesNotTell) {
    fcitx.members = {{"us", ""}, {"kr", ""}, {"table", ""}, {"emoji", ""}, {"mozc", ""}};
    fcitx.behave();
    const AvailableMethods available{{"us", "English (US)", "", "", "en", "", true},
                                     {"kr", "Korean", "", "", "ko", "ko_KR", true},
                                     {"table", "Table", "", "", "UNI", "", true},
                                     {"emoji", "Emoji", "", "", "wide", "", true},
                                     {"mozc", "Mozc", "", "", "あ", "", true}};
    fcitx.answers["AvailableInputMethods"] = replyWith(inVariant(available));
    ASSERT_TRUE(becomeInCharge());
    std::vector<Strings> languages;
    for (const InputSourceInfo& source : sources->enabledKeyboardSources())
        languages.push_back(source.languages);
    EXPECT_EQ(languages, (std::vector<Strings>{{"en"}, {"ko-KR"}, {}, {}, {}}));
}

TEST_F(HostileFcitx, IsJudgedByWhatItsSwitchCameTo) {
    const Answer silence = [](const QDBusMessage&) { return QDBusMessage(); };
    const Answer switchAndRefuse = [this](const QDBusMessage& call) {
        fcitx.current = "hangul";
        return replyWithError()(call);
    };
    const Answer switchLater = [this](const QDBusMessage& call) {
        fcitx.current = fcitx.calls["SetCurrentIM"] < 5 ? "" : "hangul"; // between two programs
        return call.createReply();
    };
    const Answer loseField = [this](const QDBusMessage& call) {
        fcitx.current.clear();
        return call.createReply();
    };
    const struct {
        const char* name;
        std::map<QString, Answer> answers;
        SelectResult result;
        bool isVerified;
    } cases[] = {
        {"success without effect", {{"SetCurrentIM", replyWith()}}, accepted, false},
        {"silence", {{"SetCurrentIM", silence}, {"CurrentInputMethod", silence}}, accepted, false},
        {"a number for a method", {{"CurrentInputMethod", replyWith(7)}}, accepted, false},
        {"an error", {{"SetCurrentIM", replyWithError()}}, refused, false},
        {"an error and yet effect", {{"SetCurrentIM", switchAndRefuse}}, accepted, true},
        {"a text field that comes", {{"SetCurrentIM", switchLater}}, accepted, true},
        {"a text field that goes", {{"SetCurrentIM", loseField}}, noField, false},
        {"a state that is a text", {{"SetCurrentIM", loseField}, {"State", replyWith("0")}}, accepted, false},
    };
    ASSERT_TRUE(becomeInCharge());
    for (const auto& scenario : cases) {
        SCOPED_TRACE(scenario.name);
        fcitx.behave();
        fcitx.current = "hangul"; // as read before, which must not pass for success
        ASSERT_TRUE(reach([this] { return sources->currentID() == korean; }));
        fcitx.current = "keyboard-us";
        fcitx.calls.clear();
        for (const auto& [method, answer] : scenario.answers) fcitx.answers[method] = answer;
        const SwitchOutcome outcome = service.switchTo(korean);
        EXPECT_EQ(outcome.result, scenario.result);
        EXPECT_EQ(outcome.verified, scenario.isVerified);
        EXPECT_LE(fcitx.calls["CurrentInputMethod"], 60);
    }
}

TEST_F(HostileFcitx, IsNotHeardWhenItsAnswerIsLate) {
    fcitx.answers.erase("AvailableInputMethods");
    ASSERT_TRUE(fcitx.isAsked("AvailableInputMethods"));
    fcitx.disappear();
    PlayedFcitx next(session.bus().address());
    ASSERT_TRUE(becomeInCharge() && watch.becomesCurrent(english));
    fcitx.answerWaiting(0, inVariant(AvailableMethods{}));
    EXPECT_TRUE(staysFalse([this] { return sources->enabledKeyboardSources().at(1).name != "한글"; }));
    EXPECT_EQ(watch.inCharge, 1);

    const auto waitFor = [&](std::size_t count) {
        return runLoopUntil([&] { return next.waiting.size() == count; });
    };
    next.answers.erase("CurrentInputMethod");
    sources->retry();
    sources->select(korean);
    ASSERT_TRUE(waitFor(2));
    next.answerWaiting(0, "hangul"); // to what was asked before
    EXPECT_TRUE(staysFalse([this] { return sources->currentID() == korean; }));
    sources->select(english);
    ASSERT_TRUE(waitFor(3));
    next.answerWaiting(1, "hangul");
    EXPECT_TRUE(staysFalse([this] { return sources->currentID().has_value(); }));
    next.answerWaiting(2, "keyboard-us");
    EXPECT_TRUE(watch.becomesCurrent(english));
}

} // namespace
