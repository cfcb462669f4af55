#include "platform/linux/xkb/xkb_input_sources.h"

#include "core/platform/input_source_switcher.h"
#include "platform/linux/base/main_loop.h"
#include "platform/linux/sources/platform_errors.h"
#include "session/x_layouts.h"
#include "session/x_server.h"
#include "support/qt_waiting.h"

#include <gmock/gmock.h>

namespace hopsel {
namespace {

using namespace std::string_literals;
using session::setLayouts;
using test::runLoopUntil;
using test::staysFalse;
using Strings = std::vector<std::string>;

const SelectResult selected = select_result::Selected{};

/// A real X server, the sources on it, and another program that changes layouts and groups.
class XkbInputSourcesTest : public testing::Test {
  protected:
    void start(const std::string& layouts) {
        setLayouts(layouts);
        startWithWhatIsSet();
    }
    void startWithWhatIsSet() {
        other = std::make_unique<session::XLayouts>();
        other->lockGroup(0);
        sources = std::make_shared<XkbInputSources>();
        sources->onSourcesChanged = [this] { ++sourcesChanges; };
        sources->onSelectedChanged = [this] { ++selectedChanges; };
        sources->onLost = [this] { ++losses; };
    }

    /// What any program can do to the property that names the layouts. Returns when the server has it.
    static void setProperty(const std::string& bytes, std::uint8_t format = 8) {
        session::XDisplay display;
        xcb_change_property(display.get(), XCB_PROP_MODE_REPLACE, display.root(),
                            display.atom("_XKB_RULES_NAMES"), XCB_ATOM_STRING, format,
                            static_cast<std::uint32_t>(bytes.size() / (format / 8U)), bytes.data());
        display.roundTrip();
    }

    Strings ids() {
        Strings result;
        for (const auto& source : sources->enabledKeyboardSources()) result.push_back(source.id);
        return result;
    }

    session::XServer server;
    std::unique_ptr<session::XLayouts> other;
    std::shared_ptr<XkbInputSources> sources;
    int sourcesChanges = 0;
    int selectedChanges = 0;
    int losses = 0;
};

// The Korean layout differs from the English one only in keys that need no group, so the compiler drops it.
TEST_F(XkbInputSourcesTest, ListsLayoutsAlsoWithoutAGroupButCannotSelectThose) {
    start("us,kr");
    const std::vector<InputSourceInfo> expected{{"xkb:us", "English (US)", "XKBGroup", {"en"}, true},
                                                {"xkb:kr", "Korean", "XKBGroup", {"ko"}, false}};
    EXPECT_EQ(sources->enabledKeyboardSources(), expected);
    EXPECT_EQ(sources->select("xkb:kr"),
              SelectResult(select_result::Failed{platform_error::groupNotLockable}));
    EXPECT_EQ(sources->select("xkb:ru"), SelectResult(select_result::NotFound{}));
    EXPECT_EQ(other->lockedGroup(), 0);
}

TEST_F(XkbInputSourcesTest, SwitchIsVerifiedByTheServersEvent) {
    start("us,ru");
    LiveInputSourceService service(sources, uptimeSeconds, runFor);
    int slowSwitches = 0;
    for (int i = 0; i < 21; ++i) {
        const std::string target = i % 2 == 0 ? "xkb:ru" : "xkb:us";
        const SwitchOutcome outcome = service.switchTo(target);
        EXPECT_TRUE(outcome.result == selected && outcome.verified);
        EXPECT_EQ(service.currentID(), target);
        if (outcome.latencyMs >= InputSourceSwitcher::pumpStep * 1000) ++slowSwitches;
    }
    EXPECT_EQ(other->lockedGroup(), 1);
    EXPECT_LT(slowSwitches, 10) << "verified by the clock, not by the event";
    EXPECT_TRUE(runLoopUntil([this] { return selectedChanges > 0; })) << "own switches are reported as well";
}

// A program that keeps a layout for each window locks its own right after ours, and both notices are read at
// once.
TEST_F(XkbInputSourcesTest, SwitchThatIsTakenBackAtOnceWasThere) {
    start("us,ru");
    for (int round = 0; round < 25; ++round) {
        ASSERT_EQ(sources->select("xkb:ru"), selected);
        other->lockGroup(0);
        ASSERT_EQ(sources->currentID(), "xkb:us");
        ASSERT_TRUE(sources->hasBeenCurrent()) << round;
    }
    // A notice from before the request tells nothing of it.
    other->lockGroups({1, 0});
    other->lockGroup(0);
    EXPECT_EQ(sources->select("xkb:us"), selected);
    EXPECT_EQ(sources->select("xkb:ru"), selected);
    EXPECT_FALSE(sources->hasBeenCurrent()) << "asked for, and not heard of yet";
    EXPECT_TRUE(runLoopUntil([this] { return sources->currentID() == "xkb:ru"; }));
    EXPECT_TRUE(sources->hasBeenCurrent());
}

TEST_F(XkbInputSourcesTest, LayoutChangeIsKnownAtOnceAndReportedOnce) {
    start("us,ru");
    setLayouts("de,us");
    ASSERT_TRUE(runLoopUntil([this] { return ids() == Strings{"xkb:de", "xkb:us"}; }));
    EXPECT_EQ(sources->currentID(), "xkb:de");
    EXPECT_EQ(sourcesChanges, 0) << "the change may go on";
    EXPECT_TRUE(runLoopUntil([this] { return sourcesChanges > 0 && selectedChanges > 0; }));
    setLayouts("de,us"); // no change
    EXPECT_TRUE(staysFalse([this] { return selectedChanges > 1 || sourcesChanges > 1; }));

    // Until the list has settled, the new group would be taken for the source that had its number before.
    setProperty("evdev\0pc105\0us,de\0\0\0"s);
    other->lockGroup(1);
    EXPECT_TRUE(runLoopUntil([this] { return sourcesChanges > 1; }));
    EXPECT_EQ(sources->currentID(), "xkb:de");
    EXPECT_TRUE(staysFalse([this] { return selectedChanges > 1; }));
    setLayouts("ru,us");
    ASSERT_TRUE(runLoopUntil([this] { return ids() == Strings{"xkb:ru", "xkb:us"}; }));
    EXPECT_EQ(sources->select("xkb:us"), selected);
    EXPECT_TRUE(other->waitForGroup(1, std::chrono::seconds(5)));
}

TEST_F(XkbInputSourcesTest, SelectionByAnotherProgramIsReportedOnceAndFlickerNever) {
    start("us,ru");
    for (int i = 0; i < 20; ++i) {
        other->lockGroup(1);
        ASSERT_EQ(sources->currentID(), "xkb:ru") << "the flicker must be seen, or it proves nothing";
        other->lockGroup(0);
    }
    EXPECT_TRUE(staysFalse([this] { return selectedChanges > 0; }));
    other->lockGroup(1);
    EXPECT_TRUE(runLoopUntil([this] { return selectedChanges > 0; }));
    EXPECT_EQ(sources->currentID(), "xkb:ru");
    EXPECT_TRUE(staysFalse([this] { return selectedChanges > 1 || sourcesChanges > 0; }));
}

TEST_F(XkbInputSourcesTest, LostServerIsReportedOnceAndReplacedByTheNext) {
    start("us,ru");
    setProperty("evdev\0pc105\0de,us\0\0\0"s); // heard of, but the server can no longer be asked
    server.kill();
    EXPECT_EQ(sources->select("xkb:ru"), SelectResult(select_result::Failed{platform_error::connectionLost}));
    EXPECT_EQ(losses, 0) << "reported from the event loop only";
    EXPECT_TRUE(runLoopUntil([this] { return losses > 0; }));
    EXPECT_EQ(sources->currentID(), std::nullopt);
    EXPECT_EQ(ids(), (Strings{"xkb:us", "xkb:ru"}));
    EXPECT_FALSE(sources->reconnect());
    EXPECT_THROW(XkbInputSources(), std::runtime_error);
    EXPECT_TRUE(staysFalse([this] { return losses > 1 || selectedChanges + sourcesChanges > 0; }));

    session::XServer next;
    setLayouts("de,us");
    ASSERT_TRUE(sources->reconnect());
    EXPECT_EQ(sources->currentID(), "xkb:de");
    EXPECT_TRUE(runLoopUntil([this] { return sourcesChanges == 1 && selectedChanges == 1; }));
    session::XLayouts().lockGroup(1);
    EXPECT_TRUE(runLoopUntil([this] { return selectedChanges == 2; })) << "the new connection is watched";
    next.kill();
    EXPECT_TRUE(runLoopUntil([this] { return losses == 2; })) << "noticed without being asked";
}

TEST_F(XkbInputSourcesTest, AnythingInTheRootPropertyGivesAListThatIsSafeToShow) {
    const Strings fromKeymap{"xkb:English (US)", "xkb:Russian"};
    const struct {
        std::string bytes;
        std::uint8_t format;
        Strings expected;
    } cases[] = {
        {"evdev\0pc105\0de,fr\0\0\0\0\0"s, 32, fromKeymap},
        {"evdev\0pc105\0\xFF\xFE,\xC3(\0\0\0"s, 8, {"xkb:??", "xkb:?("}},
        {"", 8, fromKeymap},
    };
    for (const auto& tested : cases) {
        setLayouts("us,ru");
        setProperty(tested.bytes, tested.format);
        startWithWhatIsSet();
        EXPECT_EQ(ids(), tested.expected);
        EXPECT_EQ(sources->currentID(), tested.expected.front());
        EXPECT_EQ(sources->select(tested.expected[1]), selected);
        EXPECT_TRUE(other->waitForGroup(1, std::chrono::seconds(5)));
    }
}

// As the server does when a second master keyboard comes: the keymap of the first stays.
TEST_F(XkbInputSourcesTest, TheServersDefaultsInThePropertyRenameNothing) {
    start("us,ru");
    setProperty("evdev\0pc105\0us\0\0\0"s);
    EXPECT_TRUE(staysFalse([this] { return sourcesChanges > 0 || ids() != Strings{"xkb:us", "xkb:ru"}; }));
    EXPECT_EQ(sources->select("xkb:ru"), selected);
    EXPECT_TRUE(other->waitForGroup(1, std::chrono::seconds(5)));
    setProperty("evdev\0pc105\0us,de\0\0\0"s); // as many as there are groups: that is believed
    EXPECT_TRUE(runLoopUntil([this] { return ids() == Strings{"xkb:us", "xkb:de"}; }));
    setLayouts("de");
    EXPECT_TRUE(runLoopUntil([this] { return ids() == Strings{"xkb:de"}; }));
}

} // namespace
} // namespace hopsel
