// GNOME's real settings in a folder of the test's own, and somebody who has the name of its shell.
#include "core/platform/linux/desktops/gnome_sources.h"

#include "desktops/framework_watch.h"
#include "session/private_bus.h"

#include <QDBusConnectionInterface>

namespace hopsel::test {
namespace {

using session::ChildProcess;

constexpr const char* shellConnection = "gnome shell";

class GnomeSourcesTest : public testing::Test {
  protected:
    GnomeSourcesTest() {
        // The settings' library reads it only once in a process.
        static const session::TemporaryFolder home;
        setenv("XDG_CONFIG_HOME", home.path().c_str(), 1);
        static const session::TemporaryFolder runtime;
        setenv("XDG_RUNTIME_DIR", runtime.path().c_str(), 1);
        writer = std::make_unique<ChildProcess>(
            ChildProcess::Options{"/usr/libexec/dconf-service", {}, {}, "dconf-service"});
        shell = QDBusConnection::connectToBus(QString::fromStdString(bus.address()), shellConnection);
        const auto hasWriter = [this] { return shell.interface()->isServiceRegistered("ca.desrt.dconf"); };
        EXPECT_TRUE(runLoopUntil(hasWriter));
        dconf({"reset", "-f", GnomeSettings::path});
    }
    ~GnomeSourcesTest() override { QDBusConnection::disconnectFromBus(shellConnection); }

    static void dconf(const Strings& arguments) {
        session::runProgram({"dconf", arguments, {}, "dconf-cli"});
    }
    static void set(const std::string& key, const std::string& value) {
        dconf({"write", GnomeSettings::path + key, value});
    }
    bool isCurrent(const std::optional<std::string>& id) {
        return runLoopUntil([&] { return sources.currentID() == id; });
    }

    session::PrivateBus bus;
    std::unique_ptr<ChildProcess> writer;
    QDBusConnection shell{QString()};
    GnomeSources sources;
    FrameworkWatch watch{sources};
};

TEST_F(GnomeSourcesTest, AreListedButNotSwitched) {
    set("sources", "[('xkb', 'us'), ('xkb', 'kr+kr104'), ('ibus', 'hangul'), ('xkb', 'us'), ('odd', 'x')]");
    EXPECT_FALSE(sources.isInCharge());
    shell.registerService("org.gnome.Shell");
    ASSERT_TRUE(watch.comesInCharge());
    const std::vector<InputSourceInfo> expected{
        {"gnome:xkb:us", "English (US)", "xkb", {"en"}, false},
        {"gnome:xkb:kr+kr104", "Korean (101/104-key compatible)", "xkb", {"ko"}, false},
        {"gnome:ibus:hangul", "hangul", "ibus", {}, false}};
    EXPECT_EQ(sources.enabledKeyboardSources(), expected);
    EXPECT_EQ(sources.select("gnome:ibus:hangul"),
              SelectResult(select_result::Failed{platform_error::desktopCannotSwitch}));
    EXPECT_EQ(sources.select("gnome:odd:x"), SelectResult(select_result::NotFound{}));
    shell.unregisterService("org.gnome.Shell");
    EXPECT_TRUE(watch.comesInCharge(false));
    EXPECT_EQ(watch.sources + watch.selected, 0);
}

TEST_F(GnomeSourcesTest, FollowTheSettingsAsTheShellWritesThem) {
    shell.registerService("org.gnome.Shell");
    ASSERT_TRUE(watch.comesInCharge());
    EXPECT_EQ(sources.currentID(), std::nullopt);
    set("sources", "[('xkb', 'us'), ('ibus', 'hangul')]");
    EXPECT_TRUE(isCurrent("gnome:xkb:us"));
    set("mru-sources", "[('xkb', 'ru'), ('ibus', 'hangul'), ('xkb', 'us')]");
    EXPECT_TRUE(isCurrent("gnome:ibus:hangul"));
    set("xkb-options", "['caps:none']");
    set("mru-sources", "[('ibus', 'hangul')]");
    set("per-window", "true");
    EXPECT_TRUE(isCurrent(std::nullopt));
    EXPECT_EQ(watch.sources, 1);
    EXPECT_EQ(watch.selected, 3);

    // Stored by hand, or by a program that has another idea of them.
    set("per-window", "'yes'");
    set("mru-sources", "7");
    std::string many = "[('xkb', '\\u0007')";
    for (int i = 0; i < 1000; ++i) many += ", ('ibus', 'e" + std::to_string(i) + "')";
    set("sources", many + "]");
    EXPECT_TRUE(isCurrent("gnome:ibus:e0"));
    EXPECT_EQ(watch.ids().size(), 63U);
    set("sources", "['xkb']");
    EXPECT_TRUE(isCurrent(std::nullopt));
    EXPECT_EQ(watch.ids(), Strings{});
}

} // namespace
} // namespace hopsel::test
