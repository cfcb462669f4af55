#include "core/platform/linux/xkb/xkb_input_sources.h"

#include "core/platform/input_source_switcher.h"
#include "core/platform/linux/main_loop.h"
#include "core/platform/linux/xkb/platform_errors.h"
#include "session/x_layouts.h"
#include "session/x_server.h"
#include "support/qt_waiting.h"

#include <QString>
#include <algorithm>
#include <gmock/gmock.h>

namespace hopsel {
namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;
using session::setLayouts;
using test::runLoopUntil;
using test::staysFalse;
using testing::ElementsAre;
using testing::IsEmpty;
using Strings = std::vector<std::string>;

/// A real X server, the sources on it, and another program that changes layouts and groups.
class XkbInputSourcesTest : public testing::Test {
  protected:
    void start(const std::string& layouts, const std::string& variants = {}) {
        setLayouts(layouts, variants);
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
                            display.atom("_XKB_RULES_NAMES"),
                            format == 8 ? XCB_ATOM_STRING : XCB_ATOM_CARDINAL, format,
                            static_cast<std::uint32_t>(bytes.size() / (format / 8U)), bytes.data());
        display.roundTrip();
    }

    Strings ids() {
        Strings result;
        for (const auto& source : sources->enabledKeyboardSources()) result.push_back(source.id);
        return result;
    }

    Strings selectable() {
        Strings result;
        for (const auto& source : sources->enabledKeyboardSources()) {
            if (source.isSelectCapable) result.push_back(source.id);
        }
        return result;
    }

    session::XServer server;
    std::unique_ptr<session::XLayouts> other;
    std::shared_ptr<XkbInputSources> sources;
    int sourcesChanges = 0;
    int selectedChanges = 0;
    int losses = 0;
};

TEST_F(XkbInputSourcesTest, ListsTheLayoutsWithNameAndLanguage) {
    start("us,kr", ",kr104");
    const std::vector<InputSourceInfo> expected{
        {"xkb:us", "English (US)", "XKBGroup", {"en"}, true},
        {"xkb:kr+kr104", "Korean (101/104-key compatible)", "XKBGroup", {"ko"}, true},
    };
    EXPECT_EQ(sources->enabledKeyboardSources(), expected);
    EXPECT_EQ(sources->currentID(), "xkb:us");
}

// The Korean layout differs from the English one only in keys that need no group, so the compiler drops it.
TEST_F(XkbInputSourcesTest, ListsALayoutThatHasNoGroupAsNotSelectable) {
    start("us,kr");
    EXPECT_THAT(ids(), ElementsAre("xkb:us", "xkb:kr"));
    EXPECT_THAT(selectable(), ElementsAre("xkb:us"));
    EXPECT_EQ(sources->select("xkb:kr"),
              SelectResult(select_result::Failed{platform_error::groupNotLockable}));
    EXPECT_EQ(sources->select("xkb:ru"), SelectResult(select_result::NotFound{}));
    EXPECT_EQ(other->lockedGroup(), 0);
}

TEST_F(XkbInputSourcesTest, SwitchIsVerifiedByTheServersEvent) {
    start("us,ru");
    LiveInputSourceService service(sources, uptimeSeconds, runFor);
    EXPECT_EQ(service.availableSourceIDs(), (std::set<std::string>{"xkb:ru", "xkb:us"}));

    std::vector<double> latencies;
    for (int i = 0; i < 21; ++i) {
        const std::string target = i % 2 == 0 ? "xkb:ru" : "xkb:us";
        const SwitchOutcome outcome = service.switchTo(target);
        EXPECT_EQ(outcome.result, SelectResult(select_result::Selected{}));
        EXPECT_TRUE(outcome.verified);
        EXPECT_EQ(service.currentID(), target);
        latencies.push_back(outcome.latencyMs);
    }
    EXPECT_EQ(other->lockedGroup(), 1);
    const auto median = latencies.begin() + 10;
    std::nth_element(latencies.begin(), median, latencies.end());
    EXPECT_LT(*median, InputSourceSwitcher::pumpStep * 1000) << "verified by the clock, not by the event";
    EXPECT_TRUE(runLoopUntil([this] { return selectedChanges > 0; })) << "own switches are reported as well";
}

TEST_F(XkbInputSourcesTest, LayoutChangeIsReportedOnce) {
    start("us,ru");
    setLayouts("us,de,ru");
    EXPECT_TRUE(runLoopUntil([this] { return sourcesChanges > 0; }));
    EXPECT_THAT(selectable(), ElementsAre("xkb:us", "xkb:de", "xkb:ru"));
    EXPECT_TRUE(staysFalse([this] { return sourcesChanges > 1; }));

    setLayouts("us,de,ru");
    EXPECT_TRUE(staysFalse([this] { return sourcesChanges > 1; })) << "the same layouts again are no change";
    EXPECT_EQ(selectedChanges, 0);
}

TEST_F(XkbInputSourcesTest, ListAndSelectionKnowNewLayoutsBeforeTheyAreReported) {
    start("us,ru");
    setLayouts("de,us");
    ASSERT_TRUE(runLoopUntil([this] { return ids() == Strings{"xkb:de", "xkb:us"}; }));
    EXPECT_EQ(sources->currentID(), "xkb:de");
    EXPECT_EQ(sources->select("xkb:us"), SelectResult(select_result::Selected{}));
    EXPECT_TRUE(other->waitForGroup(1, 5s));
    EXPECT_TRUE(runLoopUntil([this] { return sourcesChanges > 0; }));
}

TEST_F(XkbInputSourcesTest, SelectionByAnotherProgramIsReportedOnce) {
    start("us,ru");
    other->lockGroup(1);
    EXPECT_TRUE(runLoopUntil([this] { return selectedChanges > 0; }));
    EXPECT_EQ(sources->currentID(), "xkb:ru");
    EXPECT_TRUE(staysFalse([this] { return selectedChanges > 1; }));
    EXPECT_EQ(sourcesChanges, 0);
}

TEST_F(XkbInputSourcesTest, FlickerIsNotReported) {
    start("us,ru");
    for (int i = 0; i < 20; ++i) {
        other->lockGroup(1);
        ASSERT_EQ(sources->currentID(), "xkb:ru") << "the flicker must be seen, or it proves nothing";
        other->lockGroup(0);
    }
    EXPECT_TRUE(staysFalse([this] { return selectedChanges > 0; }));
    EXPECT_EQ(sources->currentID(), "xkb:us");
}

TEST_F(XkbInputSourcesTest, CurrentFollowsTheListWhenTheSameGroupIsAnotherSource) {
    start("us,ru");
    setLayouts("de,us");
    EXPECT_TRUE(runLoopUntil([this] { return selectedChanges > 0; }));
    EXPECT_EQ(sources->currentID(), "xkb:de");
    EXPECT_TRUE(staysFalse([this] { return selectedChanges > 1 || sourcesChanges > 1; }));
}

// Until the list has settled, the new group would be taken for the source that had its number before.
TEST_F(XkbInputSourcesTest, GroupAndListThatChangeTogetherAreNoOtherSelection) {
    start("us,ru");
    setProperty("evdev\0pc105\0ru,us\0\0\0"s);
    other->lockGroup(1);
    EXPECT_TRUE(runLoopUntil([this] { return sourcesChanges > 0; }));
    EXPECT_EQ(sources->currentID(), "xkb:us");
    EXPECT_TRUE(staysFalse([this] { return selectedChanges > 0; }));
}

TEST_F(XkbInputSourcesTest, LostServerFailsAndIsReportedOnce) {
    start("us,ru");
    setProperty("evdev\0pc105\0de,us\0\0\0"s); // heard of, but the server can no longer be asked
    server.kill();
    EXPECT_EQ(sources->select("xkb:ru"), SelectResult(select_result::Failed{platform_error::connectionLost}));
    EXPECT_EQ(losses, 0) << "reported from the event loop only";
    EXPECT_TRUE(runLoopUntil([this] { return losses > 0; }));
    EXPECT_TRUE(sources->isLost());
    EXPECT_EQ(sources->currentID(), std::nullopt);
    EXPECT_THAT(ids(), ElementsAre("xkb:us", "xkb:ru"));
    EXPECT_FALSE(sources->reconnect());
    EXPECT_TRUE(staysFalse([this] { return losses > 1; }));
    EXPECT_EQ(selectedChanges + sourcesChanges, 0);
}

TEST_F(XkbInputSourcesTest, LossIsNoticedWithoutASwitch) {
    start("us,ru");
    server.kill();
    EXPECT_TRUE(runLoopUntil([this] { return losses > 0; }));
}

TEST_F(XkbInputSourcesTest, ReconnectsToANewServer) {
    start("us,ru");
    server.kill();
    ASSERT_TRUE(runLoopUntil([this] { return losses > 0; }));

    const session::XServer next;
    setLayouts("de,us");
    ASSERT_TRUE(sources->reconnect());
    EXPECT_FALSE(sources->isLost());
    EXPECT_EQ(sources->currentID(), "xkb:de");
    EXPECT_TRUE(runLoopUntil([this] { return sourcesChanges == 1 && selectedChanges == 1; }));

    session::XLayouts nextOther;
    nextOther.lockGroup(1);
    EXPECT_TRUE(runLoopUntil([this] { return selectedChanges == 2; })) << "the new connection is watched";
    EXPECT_EQ(sources->currentID(), "xkb:us");
}

TEST(XkbInputSources, NeedAServer) {
    const session::XServer server;
    setenv("DISPLAY", ":nowhere", 1);
    EXPECT_THROW(XkbInputSources(), std::runtime_error);
}

struct PropertyCase {
    const char* name;
    std::string bytes;
    std::uint8_t format;
    Strings expected;
};

/// Whatever stands in the root window's property, which any program may write.
class UntrustedProperty : public XkbInputSourcesTest, public testing::WithParamInterface<PropertyCase> {};

TEST_P(UntrustedProperty, GivesAListThatIsSafeToShow) {
    start("us,ru");
    const auto& [name, bytes, format, expectedIDs] = GetParam();
    const Strings& expected = expectedIDs; // Clang captures no structured binding
    setProperty(bytes, format);

    EXPECT_TRUE(runLoopUntil([&] { return ids() == expected; })) << testing::PrintToString(ids());
    EXPECT_TRUE(runLoopUntil([this] { return sourcesChanges == 1; }));
    for (const InputSourceInfo& source : sources->enabledKeyboardSources()) {
        EXPECT_EQ(QString::fromUtf8(source.name.c_str()).toStdString(), source.name) << "valid UTF-8";
        EXPECT_THAT(source.name, testing::Not(IsEmpty()));
    }
    EXPECT_EQ(sources->currentID(), expected.front());
    EXPECT_EQ(sources->select(expected[1]), SelectResult(select_result::Selected{}));
    EXPECT_TRUE(other->waitForGroup(1, 5s));
}

INSTANTIATE_TEST_SUITE_P(
    , UntrustedProperty,
    testing::Values(
        PropertyCase{"empty", "", 8, {"xkb:English (US)", "xkb:Russian"}},
        PropertyCase{"no_separators", "evdev", 8, {"xkb:English (US)", "xkb:Russian"}},
        PropertyCase{"numbers", "evdev\0pc105\0de,fr\0\0\0\0\0"s, 32, {"xkb:English (US)", "xkb:Russian"}},
        PropertyCase{"empty_layout", "evdev\0pc105\0,ru\0\0\0"s, 8, {"xkb:English (US)", "xkb:ru"}},
        PropertyCase{"no_text", "evdev\0pc105\0\xFF\xFE,\xC3(\0\0\0"s, 8, {"xkb:??", "xkb:?("}},
        PropertyCase{"five_layouts",
                     "evdev\0pc105\0us,ru,de,fr,es\0\0\0"s,
                     8,
                     {"xkb:us", "xkb:ru", "xkb:de", "xkb:fr", "xkb:es"}},
        PropertyCase{"a_hundred_kilobytes",
                     "evdev\0pc105\0ru,us\0"s + std::string(100'000, 'x'),
                     8,
                     {"xkb:ru+" + std::string(64, 'x'), "xkb:us"}}),
    [](const testing::TestParamInfo<PropertyCase>& tested) { return tested.param.name; });

// The names in the keymap can be anything as well, and are what is shown where the property says nothing.
TEST_F(XkbInputSourcesTest, RemovedPropertyLeavesTheNamesInTheKeymap) {
    start("us,ru");
    session::XDisplay display;
    xcb_delete_property(display.get(), display.root(), display.atom("_XKB_RULES_NAMES"));
    display.roundTrip();
    ASSERT_TRUE(runLoopUntil([this] { return sourcesChanges == 1; }));
    const std::vector<InputSourceInfo> expected{{"xkb:English (US)", "English (US)", "XKBGroup", {}, true},
                                                {"xkb:Russian", "Russian", "XKBGroup", {}, true}};
    EXPECT_EQ(sources->enabledKeyboardSources(), expected);
}

} // namespace
} // namespace hopsel
