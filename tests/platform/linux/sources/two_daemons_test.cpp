// The real daemons of IBus and Fcitx5 in one session, where each wants the keyboard.
#include "platform/linux/fcitx/fcitx_input_sources.h"
#include "platform/linux/ibus/ibus_rig.h"
#include "platform/linux/sources/linux_input_sources.h"
#include "session/x_layouts.h"
#include "support/framework_watch.h"

namespace hopsel::test {
namespace {

TEST(TwoDaemons, TheOneThatTakesOverAnswersAndWhenItEndsTheNext) {
    IbusRig ibus;
    session::setLayouts("us,kr", ",kr104");
    IbusRig::setEngines("['xkb:us::eng', 'hangul']");
    ibus.startWindowManager();
    std::vector<std::unique_ptr<InputFramework>> frameworks;
    frameworks.push_back(std::make_unique<FcitxInputSources>(ibus.bus()));
    frameworks.push_back(std::make_unique<IbusInputSources>(ibus.bus(), ibus.log));
    const auto sources = std::make_shared<LinuxInputSources>(std::move(frameworks), nullptr);
    const auto lists = [&](const std::string& id) {
        return retryUntil(*sources, [&] {
            const auto listed = sources->enabledKeyboardSources();
            return (listed.empty() ? "" : listed.back().id) == id;
        });
    };
    LiveInputSourceService service(sources, uptimeSeconds, runFor);
    ibus.startDaemon();
    ASSERT_TRUE(lists("ibus:hangul"));
    // The first time, the engine's own program has to start, which may take longer than a switch waits.
    EXPECT_TRUE(runLoopUntil([&] { return service.switchTo("ibus:hangul").verified; }));

    session::ChildProcess::Options options;
    options.program = options.package = "fcitx5";
    options.errors = session::ChildProcess::Output::discard;
    session::ChildProcess fcitx(options);
    ASSERT_TRUE(lists("fcitx:keyboard-us")) << "what it has for a user who has set nothing";
    EXPECT_EQ(service.switchTo("ibus:hangul").result, notFound);
    EXPECT_TRUE(runLoopUntil([&] { return !ibus.daemon().isRunning(); })) << "it makes room";
    fcitx.kill(SIGKILL);
    ASSERT_TRUE(lists(""));
    EXPECT_EQ(service.currentID(), std::nullopt);
    ibus.startDaemon();
    EXPECT_TRUE(lists("ibus:hangul")) << "though the address that Fcitx5 wrote for it is there still";
    EXPECT_TRUE(service.switchTo("ibus:xkb:us::eng").verified);
}

} // namespace
} // namespace hopsel::test
