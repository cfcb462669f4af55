#include "core/platform/linux/ibus/ibus_input_sources.h"

#include "core/platform/input_source_switcher.h"
#include "core/platform/linux/main_loop.h"
#include "core/platform/linux/xkb/platform_errors.h"
#include "ibus/ibus_rig.h"
#include "session/x_layouts.h"
#include "support/qt_waiting.h"

#include <QTimer>
#include <csignal>
#include <gmock/gmock.h>

namespace hopsel {
namespace {

using namespace std::chrono_literals;
using test::runLoopUntil;

const SelectResult selected = select_result::Selected{};
const SelectResult notFound = select_result::NotFound{};
const SelectResult gone = select_result::Failed{platform_error::frameworkGone};
const InputSourceInfo english{"ibus:xkb:us::eng", "English (US)", "IBusEngine", {"en"}, true};
const InputSourceInfo hangul{"ibus:hangul", "Hangul", "IBusEngine", {"ko"}, true};

/// The real daemon, and a user with an English and a Korean engine.
class IbusInputSourcesTest : public testing::Test {
  protected:
    IbusInputSourcesTest() {
        session::setLayouts("us,kr", ",kr104");
        test::IbusRig::setEngines("['xkb:us::eng', 'hangul']");
        test::IbusRig::setHangulStart("hangul");
        sources->onSourcesChanged = [this] { ++sourcesChanges; };
        sources->onSelectedChanged = [this] { ++selectedChanges; };
        sources->onInChargeChanged = [this] { ++inChargeChanges; };
    }
    void start() {
        session.startDaemon();
        ASSERT_TRUE(test::IbusRig::become(true, *sources));
    }
    bool list(const std::vector<InputSourceInfo>& expected) {
        return runLoopUntil([&] { return sources->enabledKeyboardSources() == expected; });
    }

    test::IbusRig session;
    std::shared_ptr<IbusInputSources> sources = session.makeSources();
    LiveInputSourceService service{sources, uptimeSeconds, runFor};
    int sourcesChanges = 0;
    int selectedChanges = 0;
    int inChargeChanges = 0;
};

TEST_F(IbusInputSourcesTest, ListsTheEnginesThatAreSetAndFollowsTheSettings) {
    EXPECT_EQ(sources->select("ibus:hangul"), gone) << "no daemon yet";
    test::IbusRig::setEngines("['xkb:us::eng', 'not installed', 'hangul', 'missing', '', 'hangul']");
    test::IbusRig::setHangulStart("latin");
    start();
    InputSourceInfo latinAtFirst = hangul;
    latinAtFirst.limit = SourceLimit::startsInLatin;
    EXPECT_EQ(sources->enabledKeyboardSources(), (std::vector{english, latinAtFirst}));
    EXPECT_EQ(sources->currentID(), std::nullopt) << "none has been chosen";
    EXPECT_EQ(sources->select("ibus:missing"), notFound);

    test::IbusRig::setHangulStart("hangul");
    EXPECT_TRUE(list({english, hangul}));
    EXPECT_TRUE(runLoopUntil([&] { return sourcesChanges == 1; }));
    test::IbusRig::setHangulStart("latin");
    EXPECT_TRUE(list({english, latinAtFirst}));
    EXPECT_TRUE(runLoopUntil([&] { return sourcesChanges == 2; }));
    test::IbusRig::set("/org/freedesktop/ibus/engine/hangul/disable-latin-mode", "true");
    EXPECT_TRUE(list({english, hangul}));
    EXPECT_TRUE(runLoopUntil([&] { return sourcesChanges == 3; }));
    test::IbusRig::setEngines("['hangul', 'xkb:us::eng']");
    EXPECT_TRUE(list({hangul, english}));
    EXPECT_TRUE(runLoopUntil([&] { return sourcesChanges == 4; }));
    test::IbusRig::set("/desktop/ibus/general/switcher-delay-time", "300"); // is none of ours
    test::IbusRig::setEngines("@as []");
    EXPECT_TRUE(test::IbusRig::become(false, *sources)) << "nothing to switch to";
    EXPECT_EQ(sourcesChanges, 4);
    EXPECT_EQ(session.log.lines.size(), 2U) << "that it starts in Latin, each time that became so";
    EXPECT_EQ(inChargeChanges, 2);
}

TEST_F(IbusInputSourcesTest, SwitchIsVerifiedByTheDaemonsSignalWithTheEnginesLayout) {
    start();
    session::XLayouts layouts;
    int slowSwitches = 0;
    for (int i = 0; i < 21; ++i) {
        const InputSourceInfo& target = i % 2 == 0 ? hangul : english;
        const SwitchOutcome outcome = service.switchTo(target.id);
        EXPECT_TRUE(outcome.result == selected && outcome.verified) << i;
        EXPECT_TRUE(layouts.waitForGroup(1 - i % 2, 5s)) << i;
        if (i > 1 && outcome.latencyMs > 100) ++slowSwitches;
    }
    EXPECT_LT(slowSwitches, 5) << "verified by the clock";
    EXPECT_TRUE(runLoopUntil([this] { return selectedChanges > 0; })) << "own switches are reported as well";

    layouts.lockGroup(0);
    EXPECT_EQ(sources->select(hangul.id), selected) << "is current";
    EXPECT_TRUE(layouts.waitForGroup(1, 5s)) << "and yet its layout is wanted";
    test::IbusRig::set("/desktop/ibus/general/use-system-keyboard-layout", "true");
    EXPECT_TRUE(service.switchTo(english.id).verified);
    EXPECT_EQ(layouts.lockedGroup(), 1) << "the user wants it left alone";
}

TEST_F(IbusInputSourcesTest, LayoutThatIsNotLoadedIsLoadedOnceWithTheOthers) {
    test::IbusRig::setEngines("['xkb:us::eng', 'hangul', 'xkb:ru::rus']");
    session::setLayouts("de,fr");
    session::XLayouts layouts;
    layouts.lockGroup(1);
    start();
    const auto isLoaded = [](const std::string& description) {
        session::ChildProcess::Options query;
        query.program = "setxkbmap";
        query.arguments = {"-query"};
        return runLoopUntil(
            [&] { return session::runProgram(query).find(description + "\n") != std::string::npos; });
    };
    EXPECT_TRUE(service.switchTo("ibus:xkb:ru::rus").verified);
    EXPECT_TRUE(isLoaded("layout:     ru,us,kr\nvariant:    ,,kr104"))
        << "with those that will be wanted next";
    EXPECT_TRUE(layouts.waitForGroup(0, 5s));
    for (const auto& id : {hangul.id, english.id, hangul.id}) EXPECT_TRUE(service.switchTo(id).verified);
    EXPECT_TRUE(layouts.waitForGroup(2, 5s)) << "which then are locked at once";
    EXPECT_TRUE(isLoaded("layout:     ru,us,kr\nvariant:    ,,kr104"));

    session::setLayouts("de,fr");
    for (const auto& id : {std::string("ibus:xkb:ru::rus"), hangul.id, english.id})
        EXPECT_TRUE(service.switchTo(id).verified);
    EXPECT_TRUE(isLoaded("layout:     ru,us,kr\nvariant:    ,,kr104"));
    EXPECT_TRUE(layouts.waitForGroup(1, 5s)) << "what was wanted last while they were being loaded";
}

TEST_F(IbusInputSourcesTest, ChangeByAnotherProgramIsFollowed) {
    start();
    for (const InputSourceInfo& target : {hangul, english}) {
        session::ChildProcess::Options other;
        other.program = "ibus";
        other.arguments = {"engine", target.id.substr(5)};
        session::runProgram(other);
        EXPECT_TRUE(runLoopUntil([&] { return sources->currentID() == target.id; }));
    }
    EXPECT_TRUE(runLoopUntil([this] { return selectedChanges > 0; }));
}

TEST_F(IbusInputSourcesTest, DaemonThatDiesInTheMiddleOfASwitchEndsItAndIsTakenUpAgain) {
    start();
    ASSERT_TRUE(service.switchTo(hangul.id).verified);
    session.daemon().kill(SIGSTOP); // so that the switch is sure to be under way
    QTimer::singleShot(20, [this] { session.daemon().kill(SIGKILL); });
    const SwitchOutcome outcome = service.switchTo(english.id);
    EXPECT_EQ(outcome.result, gone);
    EXPECT_LT(outcome.latencyMs, 400);
    EXPECT_FALSE(sources->isInCharge());
    EXPECT_EQ(sources->currentID(), std::nullopt);
    EXPECT_EQ(sources->select(english.id), gone);
    session.killDaemon();
    start();
    EXPECT_TRUE(service.switchTo(english.id).verified);
}

TEST_F(IbusInputSourcesTest, DaemonMayBeKilledAgainAndAgainWhileSwitching) {
    start();
    constexpr int kills = 100;
    for (int i = 0; i < kills; ++i) {
        QTimer::singleShot(i % 10, [this] { session.daemon().kill(SIGKILL); });
        const session::Deadline deadline(5s);
        for (bool toHangul = true; sources->isInCharge() && !deadline.hasPassed(); toHangul = !toHangul) {
            const SwitchOutcome outcome = service.switchTo(toHangul ? hangul.id : english.id);
            EXPECT_TRUE((outcome.verified && outcome.result == selected) || outcome.result == gone) << i;
        }
        session.killDaemon();
        start();
    }
    EXPECT_EQ(inChargeChanges, 1 + 2 * kills);
    // The first time, the daemon has to start the engine's own program, which may take longer than a switch
    // waits.
    EXPECT_TRUE(runLoopUntil([this] { return service.switchTo(hangul.id).verified; }));
}

} // namespace
} // namespace hopsel
