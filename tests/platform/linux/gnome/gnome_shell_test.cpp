// The real shell of GNOME with the real extension in it, and letters in a real field.
#include "platform/linux/gnome/gnome_shell.h"

#include "platform/linux/gnome/gnome_rig.h"
#include "session/text_field.h"
#include "support/bus_links.h"
#include "support/fakes/engine_fakes.h"

namespace hopsel::test {
namespace {

const int keyA = 30, keyG = 34, keyK = 37, keyS = 31;
const QString manager = QStringLiteral("imports.ui.status.keyboard.getInputSourceManager()");

class GnomeShellTest : public testing::Test {
  protected:
    bool switchTo(const std::string& id) {
        return sources.select(id) == accepted && watch.becomesCurrent(id) && !sources.refusal();
    }

    GnomeRig gnome;
    fakes::RecordingLog log;
    GnomeShell sources{std::make_shared<GnomeExtension>(linkTo(gnome.session.busAddress()), log)};
    FrameworkWatch watch{sources};
};

TEST_F(GnomeShellTest, SwitchesAndTheFirstLetterIsRight) {
    ASSERT_TRUE(watch.comesInCharge());
    ASSERT_TRUE(watch.lists({"xkb:us", "xkb:ru", "ibus:hangul"})) << "once IBus has started";
    const auto listed = sources.enabledKeyboardSources();
    EXPECT_EQ(listed[1].languages, Strings{"ru"});
    EXPECT_EQ(listed[2].languages, Strings{"ko"});
    EXPECT_TRUE(listed[2].isSelectCapable);
    EXPECT_EQ(sources.select("xkb:de"), notFound);

    session::TextField field("wayland");
    std::string text;
    for (int round = 0; round < 20; ++round) {
        EXPECT_TRUE(switchTo(round % 2 == 0 ? "xkb:ru" : "xkb:us")) << round;
        gnome.type({keyA});
        text += round % 2 == 0 ? "ф" : "a";
        EXPECT_TRUE(field.waitForText(text)) << round << ": " << field.text();
    }
    for (int round = 0; round < 10; ++round) {
        EXPECT_TRUE(switchTo("ibus:hangul")) << round;
        gnome.type({keyG, keyK, keyS});
        EXPECT_TRUE(field.waitForComposed("한")) << round << ": " << field.text() << field.composed();
        EXPECT_TRUE(switchTo("xkb:us")) << round;
        text += "한";
        EXPECT_TRUE(field.waitForText(text)) << round << ": " << field.text();
        EXPECT_TRUE(field.waitForComposed("")) << "or the next round's wait ends with this one's syllable";
    }
    // What the user does in the shell is told as well.
    gnome.evaluate(manager + ".inputSources[1].activate(true)");
    EXPECT_TRUE(watch.becomesCurrent("xkb:ru"));
}

TEST_F(GnomeShellTest, PasswordsPutSourcesAsideAndSettingsTakeThemAway) {
    ASSERT_TRUE(watch.comesInCharge());
    ASSERT_TRUE(watch.lists({"xkb:us", "xkb:ru", "ibus:hangul"}));
    EXPECT_TRUE(switchTo("ibus:hangul"));
    gnome.evaluate(manager + "._ibusSetContentType(null, 8, 0)");
    EXPECT_TRUE(watch.becomesCurrent("xkb:us")) << "which the shell goes to";
    EXPECT_EQ(watch.ids().size(), 3U);
    EXPECT_EQ(sources.select("ibus:hangul"), accepted);
    EXPECT_TRUE(watch.isRefused(refused));
    gnome.evaluate(manager + "._ibusSetContentType(null, 0, 0)");
    EXPECT_TRUE(watch.becomesCurrent("ibus:hangul"));
    session::IbusSession::set("/org/gnome/desktop/input-sources/sources",
                              "[('xkb','kr+kr104'),('xkb','us')]");
    EXPECT_TRUE(watch.lists({"xkb:kr+kr104", "xkb:us"}));
    EXPECT_TRUE(switchTo("xkb:kr+kr104"));
}

TEST_F(GnomeShellTest, TalksToOneProgramUntilThatLeaves) {
    ASSERT_TRUE(watch.comesInCharge());
    Caller second(gnome.session.busAddress());
    EXPECT_EQ(second.error("Register"), "Busy");
    EXPECT_EQ(second.error("Activate", {"xkb:ru"}), "Busy");
    gnome.enableExtension(false);
    EXPECT_TRUE(watch.comesInCharge(false));
    EXPECT_EQ(sources.select("xkb:ru"), gone);

    // Enabled and disabled often, also before its body has been read, it leaves nothing behind.
    const QString handlers = manager +
                             "._signalConnections.length + imports.misc.ibusManager.getIBusManager()"
                             "._signalConnections.length";
    const std::string before = gnome.evaluate(handlers);
    for (int round = 0; round < 100; ++round) gnome.enableExtension(round % 2 == 0);
    EXPECT_EQ(gnome.evaluate(handlers), before);
    EXPECT_EQ(second.error("Register"), "ServiceUnknown");

    gnome.enableExtension(true);
    ASSERT_TRUE(watch.comesInCharge());
    EXPECT_TRUE(switchTo("xkb:ru"));
    gnome.session.shell().kill(SIGKILL);
    EXPECT_TRUE(watch.comesInCharge(false));
}

TEST(GnomeExtension, RefusesGarbageAndFloodsAndServesTheNextPeer) {
    GnomeRig gnome;
    Caller first(gnome.session.busAddress());
    Caller second(gnome.session.busAddress());
    EXPECT_EQ(first.error("Activate", {"xkb:ru"}), "Busy") << "before it has registered";
    EXPECT_EQ(first.error("Register"), "");
    EXPECT_EQ(second.error("Register"), "Busy");
    EXPECT_EQ(first.error("Activate", {7}), "InvalidArgs");
    EXPECT_EQ(first.error("Activate", {QString(100'000, u'x')}), "NotFound");
    EXPECT_EQ(first.error("Eval", {"1"}), "UnknownMethod");
    first.leave();
    EXPECT_TRUE(runLoopUntil([&] { return second.error("Register").empty(); }));
    EXPECT_TRUE(second.isFloodRefused("Activate", {"xkb:none"}));
    EXPECT_TRUE(runLoopUntil([&] { return second.error("Activate", {"xkb:ru"}).empty(); }));
}

} // namespace
} // namespace hopsel::test
