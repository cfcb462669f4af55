// From an empty home to the first switch, and how the program is met afterwards: through its panel, without
// one, by starting it again.
#include "app/walk/walk_rig.h"
#include "session/hopsel_program.h"

using namespace hopsel::test;
using namespace hopsel::session;
using namespace std::chrono_literals;
using testing::AllOf;
using testing::HasSubstr;

namespace {

constexpr int settingsItem = 3, bugReportItem = 2, quitItem = 1, pauseItem = 6;

class WalkWithoutPanel : public Walk {
  protected:
    WalkWithoutPanel() : Walk(false) {}
};

/// What the introduction says.
struct Words {
    const char* chooseKey;
    const char* chooseSources;
    const char* next;
    const char* tryKey;
    const char* field;
    const char* detected;
    const char* done;
};
constexpr Words english{"Choose your switch key",
                        "Choose your input sources",
                        "Next",
                        "Try your switch key",
                        "Try typing here",
                        "✓ Detected",
                        "Done"};
constexpr Words korean{"전환 키를 선택하세요", "입력 소스를 선택하세요",      "다음", "전환 키를 눌러 보세요",
                       "여기에 입력해 보세요", "✓ 정상적으로 감지되었습니다", "완료"};

/// The introduction with an input method, up to the page where the key is tried.
class WalkWithFramework : public Walk {
  protected:
    WalkWithFramework(bool withPanel, Framework wanted, const Words& said)
        : Walk(withPanel, wanted), words(said) {}

    void goToTheLastPage() {
        start();
        expectSeen(words.chooseKey);
        click(words.next);
        expectSeen(words.chooseSources);
        click(words.next);
        expectSeen(words.tryKey);
        expectSeen(words.field);
    }
    /// In the page's own field, as the tile says which source it is.
    void expectBothScripts() {
        expectTyped(true, "한 ");
        expectTyped(false, "gks ");
        expectTyped(true, "한 ");
    }
    void expectTyped(bool isKorean, const std::string& text) {
        EXPECT_TRUE(reader.waitUntil([&] {
            if (sees("한") != isKorean) tapTrigger();
            if (!reader.waitUntil([&] { return sees("한") == isKorean; }, 2s)) return false;
            if (!fieldText()
                     .empty()) { // of what came before; the input method hands keys back in its own time
                pressWith(key::leftControl, key::a);
                keyboard.tap(key::backspace);
            }
            if (!reader.waitUntil([&] { return fieldText().empty(); }, 2s)) return false;
            constexpr std::uint16_t keys[] = {KEY_G, KEY_K, KEY_S, KEY_SPACE};
            for (const std::uint16_t code : keys) keyboard.tap(code);
            return reader.waitUntil([&] { return fieldText() == text; }, 2s);
        })) << fieldText();
    }
    std::string fieldText() const {
        const auto field = reader.find(words.field, "text");
        return field ? field->text : "";
    }
    void expectDetected() {
        EXPECT_TRUE(reader.waitUntil([this] {
            tapTrigger();
            return reader.waitUntil([this] { return sees(words.detected); }, 1s);
        }));
        click(words.done);
        expectGone(words.done);
    }

    const Words& words;
};

class WalkWithIbus : public WalkWithFramework {
  protected:
    WalkWithIbus() : WalkWithFramework(true, Framework::ibus, english) {}
};

/// On a Korean desktop without a panel.
class WalkWithFcitx : public WalkWithFramework {
  protected:
    WalkWithFcitx() : WalkWithFramework(false, Framework::fcitx, korean) { locale = "ko_KR.UTF-8"; }
};

} // namespace

TEST_F(Walk, IntroductionLeadsToARealSwitch) {
    start();
    expectSeen("Choose your switch key");
    EXPECT_TRUE(reader.find("Right Super", "radio button")->isChecked);
    click("Next");
    expectSeen("Choose your input sources");
    EXPECT_TRUE(reader.waitUntil([this] { // until it is known that there is no input method
        const auto next = reader.find("Next");
        return next && next->isEnabled;
    }));
    keyboard.tap(key::enter); // also by the keyboard
    expectSeen("Try your switch key");
    EXPECT_FALSE(sees("✓ Detected"));
    EXPECT_TRUE(reader.waitUntil([this] {
        keyboard.tap(key::leftSuper);
        return reader.waitUntil(
            [this] { return sees("Left Super arrived. The key to press is Right Super."); }, 1s);
    }));
    expectSwitched(1, [this] { tapTrigger(); });
    expectSeen("✓ Detected");
    click("Done");
    expectGone("Done");
    EXPECT_FALSE(sees("General")) << "with a panel there is no other window";
    EXPECT_THAT(settings(), HasSubstr("\"rightCommand\""));
    expectSwitched(0, [this] { tapTrigger(); });

    running->kill(SIGTERM);
    expectEnded();
    start();
    expectSwitched(1, [this] { tapTrigger(); });
    EXPECT_TRUE(reader.look().empty()) << "the introduction comes once";
}

TEST_F(Walk, PanelMenuOpensWindowsAndEndsTheProgram) {
    startWithoutIntroduction();
    chooseFromTray(settingsItem);
    expectSeen("Show the current input in the panel");
    pressWith(key::leftControl, KEY_W);
    expectGone("General");
    chooseFromTray(bugReportItem);
    expectSeen("Recent events");
    chooseFromTray(pauseItem); // round to the first
    EXPECT_TRUE(startAgain()) << "it leaves the work to the one that runs";
    quitFromTray(quitItem);
}

TEST_F(WalkWithoutPanel, ProgramLivesOnWithoutAWindow) {
    start();
    click("Skip for now");
    expectSeen("Show the current input in the panel");
    EXPECT_TRUE(reader.waitUntil([this] { return reader.find("Hopsel", "push button").has_value(); }));
    point(*reader.find("Hopsel", "push button")); // its menu, as on a panel
    keyboard.button(1);
    ASSERT_TRUE(waitForPopup());
    keyboard.tap(KEY_UP);
    keyboard.tap(KEY_UP);
    keyboard.tap(key::enter);
    expectSeen("Recent events");
    pressWith(key::leftControl, KEY_W);
    expectSeen("Hopsel keeps running");
    keyboard.tap(key::enter);
    expectGone("Hopsel keeps running");
    EXPECT_TRUE(reader.look().empty());
    startAgain();
    expectSeen("Recent events");
    pressWith(key::leftControl, KEY_W);
    expectGone("Recent events");
    EXPECT_TRUE(reader.look().empty()) << "it is said once";
    running->kill(SIGTERM);
    expectEnded();
}

TEST_F(WalkWithoutPanel, NothingIsShownAtLoginUntilItIsStartedByHand) {
    home.write("data/Hopsel/config.json", twoRules);
    start({"--background"});
    expectSwitched(1, [this] { tapTrigger(); });
    EXPECT_TRUE(startAgain({"--background"}));
    EXPECT_TRUE(reader.look().empty());
    EXPECT_TRUE(startAgain());
    expectSeen("Show the current input in the panel");
    pressWith(key::leftControl, KEY_W);
    click("Quit Hopsel");
    expectEnded();
}

TEST_F(WalkWithIbus, IntroductionSuggestsWhatIbusHasAndSwitchesIt) {
    goToTheLastPage();
    expectBothScripts();
    expectDetected();
    EXPECT_THAT(settings(), AllOf(HasSubstr("\"ibus:hangul\""), HasSubstr("\"ibus:xkb:us::eng\"")));
}

TEST_F(WalkWithFcitx, IntroductionSuggestsWhatFcitxHasAndSwitchesIt) {
    goToTheLastPage();
    expectBothScripts();
    expectDetected();
    EXPECT_THAT(settings(), AllOf(HasSubstr("\"fcitx:hangul\""), HasSubstr("\"fcitx:keyboard-us\"")));
}
