// The program with a real input method and another program's text field: a hundred taps of the trigger, and
// after each the letters that were meant.
#include "platform/linux/fcitx/fcitx_rig.h"
#include "platform/linux/ibus/ibus_rig.h"
#include "session/text_field.h"
#include "session/x_keyboard.h"
#include "session/x_layouts.h"
#include "session/x_server.h"

namespace hopsel::test {
namespace {

using namespace session;

constexpr int taps = 100;
constexpr std::uint16_t hanSyllable[] = {KEY_G, KEY_K, KEY_S};

std::string settings(const std::string& korean, const std::string& english) {
    return R"({"schemaVersion": 2, "rules": [{"id": "7A4C0A52-0D5C-4E0E-9E39-3F1B0C7C2B11", "enabled": true,
        "trigger": {"type": "modifier_tap", "key": "rightCommand"},
        "action": {"type": "toggle_input_source",
                   "sourceA": {"sourceId": ")" +
           korean + R"(", "displayName": "Korean"}, "sourceB": {"sourceId": ")" + english +
           R"(", "displayName": "English"}}}]})";
}

/// Types Korean and English in turn. `sources` follows the daemon beside the program, as a user's eye does.
void typeInTurn(InputFramework& sources, const char* inputMethod, const std::string& korean,
                const std::string& english) {
    const TemporaryFolder folder;
    ChildProcess::Options options;
    options.program = HOPSEL_EXECUTABLE;
    options.environment = {{"HOPSEL_CONFIG", folder.write("rules.json", settings(korean, english)).string()}};
    const ChildProcess program(options);
    TextField field(inputMethod);
    XKeyboard keyboard;
    const auto becomes = [&](const std::string& id, std::chrono::milliseconds patience) {
        return runLoopUntil(
            [&] {
                sources.retry();
                return sources.currentID() == id;
            },
            patience);
    };
    // As fast as fingers are. A switch in the same instant as a key can overtake that key on its way through
    // the application to the input method: IBus then drops the letter, or what it was composing.
    const auto fingersMove = [] { staysFalse([] { return false; }, std::chrono::milliseconds(60)); };
    const auto tapTrigger = [&] {
        keyboard.press(key::rightSuper);
        fingersMove();
        keyboard.release(key::rightSuper);
    };
    // Until the program says that it works a tap does nothing; and a second one would undo a slow first.
    const auto works = [question = options]() mutable {
        question.arguments = {"--status"};
        question.output = ChildProcess::Output::capture;
        question.errors = ChildProcess::Output::discard;
        return ChildProcess(question).waitForLine("✓", std::chrono::seconds(10)).has_value();
    };
    ASSERT_TRUE(runLoopUntil(works, std::chrono::seconds(30)));
    if (!becomes(korean, std::chrono::seconds(1))) tapTrigger();
    ASSERT_TRUE(becomes(korean, std::chrono::seconds(30))) << "the engine's own program starts with it";
    std::string expected;
    for (int tap = 0; tap < taps; tap += 2) {
        ASSERT_TRUE(becomes(korean, std::chrono::seconds(5))) << tap;
        fingersMove();
        for (const std::uint16_t code : hanSyllable) keyboard.tap(code);
        ASSERT_TRUE(field.waitForComposed("한")) << tap << ' ' << field.text() << field.composed();
        tapTrigger();
        ASSERT_TRUE(becomes(english, std::chrono::seconds(5))) << tap;
        fingersMove();
        keyboard.tap(key::a);
        expected += "한a";
        ASSERT_TRUE(field.waitForText(expected)) << tap << ' ' << field.text();
        tapTrigger();
    }
}

TEST(Typing, FollowsEveryTapWithIbus) {
    IbusRig session;
    setLayouts("us,kr", ",kr104");
    IbusRig::setEngines("['xkb:us::eng', 'hangul']");
    IbusRig::setHangulStart("hangul");
    session.startWindowManager();
    session.startPanel(); // without one the program opens a window of its own
    session.startDaemon();
    const auto sources = session.makeSources();
    ASSERT_TRUE(IbusRig::become(true, *sources));
    typeInTurn(*sources, "ibus", "ibus:hangul", "ibus:xkb:us::eng");
}

class TypingWithFcitx : public FcitxRig {};

TEST_F(TypingWithFcitx, FollowsEveryTap) {
    XServer server;
    setLayouts("us");
    server.startWindowManager();
    server.startPanel();
    session.startDaemon();
    ASSERT_TRUE(becomeInCharge());
    typeInTurn(*sources, "fcitx", korean, english);
}

} // namespace
} // namespace hopsel::test
