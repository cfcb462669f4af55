#include "core/platform/linux/xkb_input_sources.h"

#include "core/platform/input_source_switcher.h"
#include "core/platform/linux/main_loop.h"
#include "core/platform/linux/platform_errors.h"
#include "support/qt_waiting.h"
#include "support/x_layouts.h"
#include "support/x_server.h"

#include <QString>
#include <algorithm>
#include <gmock/gmock.h>

namespace hopsel {
namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;
using test::runLoopUntil;
using test::setLayouts;
using test::staysFalse;
using testing::ElementsAre;
using testing::IsEmpty;
using Strings = std::vector<std::string>;

/// A real X server, the sources on it, and another program that changes layouts and groups.
class XkbInputSourcesTest : public testing::Test {
  protected:
    void start(const std::string& layouts, const std::string& variants = {}) {
        setLayouts(layouts, variants);
        other_ = std::make_unique<test::XLayouts>();
        other_->lockGroup(0);
        sources_ = std::make_shared<XkbInputSources>();
        sources_->onSourcesChanged = [this] { ++sourcesChanges_; };
        sources_->onSelectedChanged = [this] { ++selectedChanges_; };
        sources_->onLost = [this] { ++losses_; };
    }

    Strings ids() {
        Strings result;
        for (const auto& source : sources_->enabledKeyboardSources()) result.push_back(source.id);
        return result;
    }

    Strings selectable() {
        Strings result;
        for (const auto& source : sources_->enabledKeyboardSources()) {
            if (source.isSelectCapable) result.push_back(source.id);
        }
        return result;
    }

    test::XServer server_;
    std::unique_ptr<test::XLayouts> other_;
    std::shared_ptr<XkbInputSources> sources_;
    int sourcesChanges_ = 0;
    int selectedChanges_ = 0;
    int losses_ = 0;
};

TEST_F(XkbInputSourcesTest, ListsTheLayoutsWithNameAndLanguage) {
    start("us,kr", ",kr104");
    const std::vector<InputSourceInfo> expected{
        {"xkb:us", "English (US)", "XKBGroup", {"en"}, true},
        {"xkb:kr+kr104", "Korean (101/104-key compatible)", "XKBGroup", {"ko"}, true},
    };
    EXPECT_EQ(sources_->enabledKeyboardSources(), expected);
    EXPECT_EQ(sources_->currentID(), "xkb:us");
}

// The Korean layout differs from the English one only in keys that need no group, so the compiler drops it.
TEST_F(XkbInputSourcesTest, ListsALayoutThatHasNoGroupAsNotSelectable) {
    start("us,kr");
    EXPECT_THAT(ids(), ElementsAre("xkb:us", "xkb:kr"));
    EXPECT_THAT(selectable(), ElementsAre("xkb:us"));
    EXPECT_EQ(sources_->select("xkb:kr"),
              SelectResult(select_result::Failed{platform_error::groupNotLockable}));
    EXPECT_EQ(sources_->select("xkb:ru"), SelectResult(select_result::NotFound{}));
    EXPECT_EQ(other_->lockedGroup(), 0);
}

TEST_F(XkbInputSourcesTest, SwitchIsVerifiedByTheServersEvent) {
    start("us,ru");
    LiveInputSourceService service(sources_, uptimeSeconds, runFor);
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
    EXPECT_EQ(other_->lockedGroup(), 1);
    const auto median = latencies.begin() + 10;
    std::nth_element(latencies.begin(), median, latencies.end());
    EXPECT_LT(*median, InputSourceSwitcher::pumpStep * 1000) << "verified by the clock, not by the event";
    EXPECT_TRUE(runLoopUntil([this] { return selectedChanges_ > 0; })) << "own switches are reported as well";
}

TEST_F(XkbInputSourcesTest, LayoutChangeIsReportedOnce) {
    start("us,ru");
    setLayouts("us,de,ru");
    EXPECT_TRUE(runLoopUntil([this] { return sourcesChanges_ > 0; }));
    EXPECT_THAT(selectable(), ElementsAre("xkb:us", "xkb:de", "xkb:ru"));
    EXPECT_TRUE(staysFalse([this] { return sourcesChanges_ > 1; }));

    setLayouts("us,de,ru");
    EXPECT_TRUE(staysFalse([this] { return sourcesChanges_ > 1; })) << "the same layouts again are no change";
    EXPECT_EQ(selectedChanges_, 0);
}

TEST_F(XkbInputSourcesTest, ListAndSelectionKnowNewLayoutsBeforeTheyAreReported) {
    start("us,ru");
    setLayouts("de,us");
    ASSERT_TRUE(runLoopUntil([this] { return ids() == Strings{"xkb:de", "xkb:us"}; }));
    EXPECT_EQ(sources_->currentID(), "xkb:de");
    EXPECT_EQ(sources_->select("xkb:us"), SelectResult(select_result::Selected{}));
    EXPECT_TRUE(other_->waitForGroup(1, 5s));
    EXPECT_TRUE(runLoopUntil([this] { return sourcesChanges_ > 0; }));
}

TEST_F(XkbInputSourcesTest, SelectionByAnotherProgramIsReportedOnce) {
    start("us,ru");
    other_->lockGroup(1);
    EXPECT_TRUE(runLoopUntil([this] { return selectedChanges_ > 0; }));
    EXPECT_EQ(sources_->currentID(), "xkb:ru");
    EXPECT_TRUE(staysFalse([this] { return selectedChanges_ > 1; }));
    EXPECT_EQ(sourcesChanges_, 0);
}

TEST_F(XkbInputSourcesTest, FlickerIsNotReported) {
    start("us,ru");
    for (int i = 0; i < 20; ++i) {
        other_->lockGroup(1);
        ASSERT_EQ(sources_->currentID(), "xkb:ru") << "the flicker must be seen, or it proves nothing";
        other_->lockGroup(0);
    }
    EXPECT_TRUE(staysFalse([this] { return selectedChanges_ > 0; }));
    EXPECT_EQ(sources_->currentID(), "xkb:us");
}

TEST_F(XkbInputSourcesTest, CurrentFollowsTheListWhenTheSameGroupIsAnotherSource) {
    start("us,ru");
    setLayouts("de,us");
    EXPECT_TRUE(runLoopUntil([this] { return selectedChanges_ > 0; }));
    EXPECT_EQ(sources_->currentID(), "xkb:de");
    EXPECT_TRUE(staysFalse([this] { return selectedChanges_ > 1 || sourcesChanges_ > 1; }));
}

TEST_F(XkbInputSourcesTest, LostServerFailsAndIsReportedOnce) {
    start("us,ru");
    server_.kill();
    EXPECT_EQ(sources_->select("xkb:ru"),
              SelectResult(select_result::Failed{platform_error::connectionLost}));
    EXPECT_EQ(losses_, 0) << "reported from the event loop only";
    EXPECT_TRUE(runLoopUntil([this] { return losses_ > 0; }));
    EXPECT_TRUE(sources_->isLost());
    EXPECT_EQ(sources_->currentID(), std::nullopt);
    EXPECT_THAT(ids(), ElementsAre("xkb:us", "xkb:ru"));
    EXPECT_FALSE(sources_->reconnect());
    EXPECT_TRUE(staysFalse([this] { return losses_ > 1; }));
    EXPECT_EQ(selectedChanges_ + sourcesChanges_, 0);
}

TEST_F(XkbInputSourcesTest, LossIsNoticedWithoutASwitch) {
    start("us,ru");
    server_.kill();
    EXPECT_TRUE(runLoopUntil([this] { return losses_ > 0; }));
}

TEST_F(XkbInputSourcesTest, ReconnectsToANewServer) {
    start("us,ru");
    server_.kill();
    ASSERT_TRUE(runLoopUntil([this] { return losses_ > 0; }));

    const test::XServer next;
    setLayouts("de,us");
    ASSERT_TRUE(sources_->reconnect());
    EXPECT_FALSE(sources_->isLost());
    EXPECT_EQ(sources_->currentID(), "xkb:de");
    EXPECT_TRUE(runLoopUntil([this] { return sourcesChanges_ == 1 && selectedChanges_ == 1; }));

    test::XLayouts other;
    other.lockGroup(1);
    EXPECT_TRUE(runLoopUntil([this] { return selectedChanges_ == 2; })) << "the new connection is watched";
    EXPECT_EQ(sources_->currentID(), "xkb:us");
}

TEST(XkbInputSources, NeedAServer) {
    const test::XServer server;
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
    test::XDisplay display;
    const auto& [name, bytes, format, expected] = GetParam();
    const auto property = display.atom("_XKB_RULES_NAMES");
    xcb_change_property(display.get(), XCB_PROP_MODE_REPLACE, display.root(), property,
                        format == 8 ? XCB_ATOM_STRING : XCB_ATOM_CARDINAL, format,
                        static_cast<std::uint32_t>(bytes.size() / (format / 8U)), bytes.data());
    display.roundTrip();

    EXPECT_TRUE(runLoopUntil([&] { return ids() == expected; })) << testing::PrintToString(ids());
    EXPECT_TRUE(runLoopUntil([this] { return sourcesChanges_ == 1; }));
    for (const InputSourceInfo& source : sources_->enabledKeyboardSources()) {
        EXPECT_EQ(QString::fromUtf8(source.name.c_str()).toStdString(), source.name) << "valid UTF-8";
        EXPECT_THAT(source.name, testing::Not(IsEmpty()));
    }
    EXPECT_EQ(sources_->currentID(), expected.front());
    EXPECT_EQ(sources_->select(expected[1]), SelectResult(select_result::Selected{}));
    EXPECT_TRUE(other_->waitForGroup(1, 5s));
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
    test::XDisplay display;
    xcb_delete_property(display.get(), display.root(), display.atom("_XKB_RULES_NAMES"));
    display.roundTrip();
    ASSERT_TRUE(runLoopUntil([this] { return sourcesChanges_ == 1; }));
    const std::vector<InputSourceInfo> expected{{"xkb:English (US)", "English (US)", "XKBGroup", {}, true},
                                                {"xkb:Russian", "Russian", "XKBGroup", {}, true}};
    EXPECT_EQ(sources_->enabledKeyboardSources(), expected);
}

} // namespace
} // namespace hopsel
