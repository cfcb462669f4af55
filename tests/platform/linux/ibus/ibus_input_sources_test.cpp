#include "platform/linux/ibus/ibus_rig.h"
#include "session/x_layouts.h"
#include "support/framework_watch.h"

namespace hopsel::test {
namespace {

using namespace std::chrono_literals;

const InputSourceInfo english{"ibus:xkb:us::eng", "English (US)", "IBusEngine", {"en"}, true};
const InputSourceInfo hangul{"ibus:hangul", "Hangul", "IBusEngine", {"ko"}, true};

/// The real daemon, and a user with an English and a Korean engine.
class IbusInputSourcesTest : public testing::Test {
  protected:
    IbusInputSourcesTest() {
        session::setLayouts("us,kr", ",kr104");
        IbusRig::setEngines("['xkb:us::eng', 'hangul']");
        IbusRig::setHangulStart("hangul");
    }
    void start() {
        session.startDaemon();
        ASSERT_TRUE(IbusRig::become(true, *sources));
    }
    /// Reported with the change that made it so.
    bool lists(const std::vector<InputSourceInfo>& expected, int changes) {
        return runLoopUntil(
            [&] { return sources->enabledKeyboardSources() == expected && watch.sources == changes; });
    }
    /// The first time, the daemon has to start the engine's own program, which may take longer than a switch
    /// waits.
    bool switches() {
        return runLoopUntil([this] { return service.switchTo(hangul.id).verified; });
    }
    static std::string run(const std::string& program, const std::string& argument,
                           const std::string& more = {}) {
        session::ChildProcess::Options options;
        options.program = program;
        options.arguments = {argument};
        if (!more.empty()) options.arguments.push_back(more);
        return session::runProgram(options);
    }

    IbusRig session;
    std::shared_ptr<IbusInputSources> sources = session.makeSources();
    FrameworkWatch watch{*sources};
    LiveInputSourceService service{sources, uptimeSeconds, runFor};
};

TEST_F(IbusInputSourcesTest, ListsTheEnginesThatAreSetAndFollowsTheSettings) {
    EXPECT_EQ(sources->select("ibus:hangul"), gone) << "no daemon yet";
    IbusRig::setEngines("['xkb:us::eng', 'not installed', 'hangul', 'missing', '', 'hangul']");
    start();
    EXPECT_EQ(sources->enabledKeyboardSources(), (std::vector{english, hangul}));
    EXPECT_EQ(sources->currentID(), std::nullopt) << "none has been chosen";
    EXPECT_EQ(sources->select("ibus:missing"), notFound);

    IbusRig::setEngines("['hangul', 'xkb:us::eng']");
    EXPECT_TRUE(lists({hangul, english}, 1));
    IbusRig::setEngines("@as []");
    EXPECT_TRUE(IbusRig::become(false, *sources)) << "nothing to switch to";
    EXPECT_EQ(watch.inCharge, 2);
}

TEST_F(IbusInputSourcesTest, SwitchIsVerifiedByTheDaemonsSignalWithTheEnginesLayout) {
    start();
    session::XLayouts layouts;
    int slowSwitches = 0;
    for (int i = 0; i < 21; ++i) {
        const InputSourceInfo& target = i % 2 == 0 ? hangul : english;
        const SwitchOutcome outcome = service.switchTo(target.id);
        const bool startsItsEngine = i < 2; // a process, which may take longer than a switch is given
        EXPECT_TRUE(outcome.result == accepted && (outcome.verified || startsItsEngine)) << i;
        EXPECT_TRUE(watch.becomesCurrent(target.id)) << i;
        EXPECT_TRUE(layouts.waitForGroup(1 - i % 2, 5s)) << i;
        if (i > 1 && outcome.latencyMs > 100) ++slowSwitches;
    }
    EXPECT_LT(slowSwitches, 5) << "verified by the clock";

    layouts.lockGroup(0);
    EXPECT_EQ(sources->select(hangul.id), accepted) << "is current";
    EXPECT_TRUE(layouts.waitForGroup(1, 5s)) << "and yet its layout is wanted";
    IbusRig::set("/desktop/ibus/general/use-system-keyboard-layout", "true");
    sources->retry(); // reads the settings; the signal that tells of them may come after the engine's
    EXPECT_TRUE(service.switchTo(english.id).verified);
    EXPECT_EQ(layouts.lockedGroup(), 1) << "the user wants it left alone";

    for (const InputSourceInfo& target : {hangul, english}) {
        watch.selected = 0;
        run("ibus", "engine", target.id.substr(5));
        EXPECT_TRUE(watch.becomesCurrent(target.id)) << "by another program";
        EXPECT_TRUE(runLoopUntil([&] { return watch.selected > 0; }));
    }
}

TEST_F(IbusInputSourcesTest, LayoutThatIsNotLoadedIsLoadedOnceWithTheOthers) {
    IbusRig::setEngines("['xkb:us::eng', 'hangul', 'xkb:ru::rus']");
    session::XLayouts layouts;
    start();
    for (const std::string& last : {hangul.id, english.id}) {
        session::setLayouts("de,fr");
        for (const std::string& id : {std::string("ibus:xkb:ru::rus"), hangul.id, english.id, last})
            EXPECT_TRUE(service.switchTo(id).verified || watch.becomesCurrent(id))
                << "its engine may be slow to start";
        EXPECT_TRUE(runLoopUntil([] {
            return run("setxkbmap", "-query").find("layout:     ru,us,kr\nvariant:    ,,kr104\n") !=
                   std::string::npos;
        })) << "with those that will be wanted next";
        EXPECT_TRUE(layouts.waitForGroup(last == hangul.id ? 2 : 1, 5s))
            << "what was wanted last while they were being loaded";
    }
}

TEST_F(IbusInputSourcesTest, DaemonMayBeKilledAgainAndAgainWhileSwitching) {
    start();
    constexpr int kills = 100;
    for (int i = 0; i < kills; ++i) {
        expectSwitchEndsWithDaemon(service, session.daemon(), i, hangul.id, english.id);
        EXPECT_FALSE(sources->isInCharge());
        EXPECT_EQ(sources->currentID(), std::nullopt);
        EXPECT_EQ(sources->select(english.id), gone);
        session.killDaemon();
        start();
    }
    EXPECT_EQ(watch.inCharge, 1 + 2 * kills);
    EXPECT_TRUE(switches());
}

TEST_F(IbusInputSourcesTest, ComesBackWithARestartedSessionBus) {
    start();
    EXPECT_TRUE(switches());
    session.sessionBus().kill();
    session.killDaemon();
    EXPECT_TRUE(IbusRig::become(false, *sources));
    EXPECT_EQ(sources->select(hangul.id), gone);
    session.sessionBus().restart();
    start();
    EXPECT_EQ(sources->enabledKeyboardSources(), (std::vector{english, hangul}));
    EXPECT_TRUE(switches());
}

} // namespace
} // namespace hopsel::test
