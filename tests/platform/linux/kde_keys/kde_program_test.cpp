// The program itself in KDE's compositor: what it can do without the key helper, what it says it cannot, and
// that the helper is taken up as it comes.
#include "platform/linux/kde_keys/kwin_rig.h"
#include "platform/linux/keys_session/played_helper.h"
#include "session/hopsel_program.h"
#include "session/private_bus.h"
#include "session/text_field.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <regex>

namespace hopsel::test {
namespace {

class KdeProgram : public testing::Test {
  protected:
    KdeProgram() {
        setenv("HOPSEL_KEYS_SOCKET", later.c_str(), 1);
        for (const char* variable : {"DISPLAY", "QT_QPA_PLATFORM"}) unsetenv(variable);
    }
    ~KdeProgram() override { unsetenv("HOPSEL_KEYS_SOCKET"); }

    static std::string rules() {
        std::string text(session::twoRules);
        text = std::regex_replace(text, std::regex("xkb:us"), "kde:us");
        return std::regex_replace(text, std::regex("xkb:ru"), "kde:ru");
    }
    static std::string ask(const session::HopselProgram& program, const std::string& what) {
        return program.startAnother({what, "--json"})->readAll(std::chrono::seconds(20));
    }
    static bool says(const session::HopselProgram& program, const std::string& words) {
        return runLoopUntil([&] { return ask(program, "--status").find(words) != std::string::npos; });
    }
    bool becomesCurrent(uint layout, std::chrono::milliseconds timeout = std::chrono::seconds(20)) {
        auto question = QDBusMessage::createMethodCall("org.kde.keyboard", "/Layouts",
                                                       "org.kde.KeyboardLayouts", "getLayout");
        return runLoopUntil(
            [&] {
                const QDBusMessage reply = connection.call(question);
                return reply.arguments().value(0) == QVariant(layout);
            },
            timeout);
    }

    session::TemporaryFolder folder;
    std::filesystem::path later = folder.path() / "keys.sock";
    session::PrivateBus bus;
    QDBusConnection connection =
        QDBusConnection::connectToBus(QString::fromStdString(bus.address()), "kde program test");
    Kwin kwin;
    PlayedHelper helper;
};

TEST_F(KdeProgram, CombinationsWorkWithoutTheHelperAndTheRestWithIt) {
    session::HopselProgram program(HOPSEL_EXECUTABLE, rules(), {"--background"}); // no window takes the focus
    ASSERT_TRUE(says(program, "only-combinations"))
        << "and not that all is well: " << ask(program, "--status");
    session::TextField field("wayland");
    ASSERT_TRUE(runLoopUntil([&] { // KDE may not have taken it yet
        kwin.type("+42 +57 -57 -42");
        return becomesCurrent(1, std::chrono::seconds(1));
    }));
    kwin.type("+30 -30 +42 +57 -57 -42");
    EXPECT_TRUE(becomesCurrent(0));
    kwin.type("+30 -30");
    EXPECT_TRUE(field.waitForText("фa")) << "no space has arrived: " << field.text();
    kwin.type("+126 -126 +57 -57");
    EXPECT_TRUE(field.waitForText("фa ")) << field.text();
    EXPECT_TRUE(becomesCurrent(0)) << "a lone key is not heard";

    // The helper is turned on.
    std::filesystem::create_symlink(helper.path(), later);
    ASSERT_TRUE(helper.greet());
    EXPECT_EQ(helper.next(), std::nullopt) << "it begins anew with it";
    ASSERT_TRUE(helper.greet());
    ASSERT_EQ(helper.declared(), std::vector<std::string>{"49|leftShift"});
    EXPECT_TRUE(says(program, "\"ok\""));
    constexpr std::uint8_t rightSuper = 1;
    helper.tell({to_session::Modifier{rightSuper, true, 0}, to_session::Modifier{rightSuper, false, 0}});
    EXPECT_TRUE(becomesCurrent(1));
    kwin.type("+42 +57 -57 -42");
    EXPECT_TRUE(field.waitForText("фa  "))
        << "KDE has given it back: " << field.text() << "; " << field.keys();
}

} // namespace
} // namespace hopsel::test
