// The platform-free pieces: the switcher, remote applications, the guest key, the log of failures.
#include "core/platform/guest_key.h"
#include "core/platform/input_source_switcher.h"
#include "core/platform/remote_apps.h"
#include "core/platform/synthetic_events.h"
#include "core/platform/tap_failure.h"
#include "support/fakes/engine_fakes.h"

#include <cctype>
#include <gmock/gmock.h>
#include <thread>

namespace hopsel {
namespace {

using fakes::FakeCatalog;
using testing::DoubleNear;
using testing::ElementsAre;
using enum ModifierKey;

class Switcher : public testing::Test {
  protected:
    Switcher() {
        for (const char* id : {"A", "B", "C"}) catalog->sources.push_back({id, id, "", {}, true});
        catalog->current = "A";
    }

    fakes::VirtualTime time;
    std::shared_ptr<FakeCatalog> catalog = std::make_shared<FakeCatalog>();
    std::vector<double> pumped;
    InputSourceSwitcher::Clock clock = [this] { return time.now; };
    InputSourceSwitcher::RunLoop runLoop = [this](double seconds) {
        pumped.push_back(seconds);
        time.advance(seconds);
    };
    InputSourceSwitcher switcher{*catalog, clock, runLoop};
};

TEST_F(Switcher, waitsInStepsUntilThePlatformReportsTheSourceOrTheTimeIsOver) {
    EXPECT_EQ(switcher.switchTo("C", std::nullopt, 0.5),
              (SwitchOutcome{"C", select_result::Selected{}, true, 0}));
    EXPECT_TRUE(pumped.empty()) << "it looks before it waits";
    catalog->lag = 3;
    SwitchOutcome outcome = switcher.switchTo("B", std::nullopt, 0.5);
    EXPECT_TRUE(outcome.verified);
    EXPECT_THAT(outcome.latencyMs, DoubleNear(15, 1e-6));
    EXPECT_THAT(pumped, ElementsAre(0.005, 0.005, 0.005));
    catalog->lag = 1000;
    outcome = switcher.switchTo("A", std::nullopt, 0.5);
    EXPECT_EQ(outcome.result, SelectResult{select_result::Selected{}});
    EXPECT_FALSE(outcome.verified);
    EXPECT_THAT(outcome.latencyMs, DoubleNear(502.5, 2.6));
}

TEST_F(Switcher, doesNotWaitForWhatWasNotSelected) {
    catalog->status = -50;
    EXPECT_EQ(switcher.switchTo("B", std::nullopt, 0.5).result, SelectResult{select_result::Failed{-50}});
    EXPECT_EQ(switcher.switchTo("Z", std::nullopt, 0.5),
              (SwitchOutcome{"Z", select_result::NotFound{}, false, 0}));
    EXPECT_TRUE(pumped.empty());
}

TEST_F(Switcher, passesThroughAnotherSourceAndReportsTheLast) {
    catalog->lag = 1;
    EXPECT_EQ(switcher.switchTo("B", "C", 0.5).requested, "B");
    EXPECT_THAT(catalog->selections, ElementsAre("C", "B"));
    EXPECT_EQ(pumped.size(), 2U) << "each step is waited for";
    EXPECT_TRUE(switcher.switchTo("C", "Z", 0.5).verified) << "a step that fails is no failure of the switch";
}

TEST_F(Switcher, stopsTheProcessOutsideTheMainThread) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(std::thread([&] { switcher.switchTo("B", std::nullopt, 0.5); }).join(),
                 "outside the main thread");
}

TEST_F(Switcher, liveServiceOffersOnlyWhatCanBeSelectedAndWaitsHalfASecond) {
    catalog->sources.push_back({"parent", "parent", "", {}, false});
    catalog->lag = 1000;
    LiveInputSourceService service(catalog, clock, runLoop);
    EXPECT_THAT(service.availableSourceIDs(), ElementsAre("A", "B", "C"));
    EXPECT_EQ(service.currentID(), "A");
    EXPECT_THAT(service.switchTo("B").latencyMs, DoubleNear(500, 5.1));
}

TEST(RemoteApps, areKnownByTheBeginningOfTheirIdentifier) {
    using enum remote_apps::Kind;
    const std::pair<remote_apps::Kind, std::vector<std::string>> rows[]{
        {guestOS,
         {"com.parallels.", "com.vmware.", "org.virtualbox.", "com.utmapp.utm", "com.veertu.",
          "codes.rambo.virtualbuddy", "com.microsoft.rdc", "com.apple.screensharing",
          "com.apple.remotedesktop", "virtualbox machine", "qemu", "org.remmina.remmina"}},
        {remoteScreen,
         {"com.p5sys.jump", "com.teamviewer.", "com.philandro.anydesk", "com.citrix.", "com.realvnc.",
          "vncviewer", "nxplayer"}}};
    for (const auto& [kind, prefixes] : rows) {
        for (const std::string& prefix : prefixes) {
            std::string capitals = prefix + "x";
            for (char& letter : capitals) letter = static_cast<char>(std::toupper(letter));
            EXPECT_EQ(remote_apps::kind(prefix), kind) << prefix;
            EXPECT_EQ(remote_apps::kind(capitals), kind) << prefix;
            EXPECT_FALSE(remote_apps::isRemote(prefix.substr(0, prefix.size() - 1))) << prefix;
            EXPECT_FALSE(remote_apps::isRemote("x" + prefix)) << prefix;
        }
    }
    for (const char* local : {"VirtualBox Manager", "org.gnome.Terminal", ""})
        EXPECT_FALSE(remote_apps::isRemote(local));
    EXPECT_FALSE(remote_apps::isRemote(std::nullopt));
}

TEST(GuestKeySequence, pressesModifiersByNameAndReleasesThemInReverse) {
    EXPECT_THAT(
        guest_key_sequence::events({49, {rightCommand, leftShift, leftCommand}}),
        ElementsAre(SyntheticKeyEvent{55, true, 0x100008, true}, SyntheticKeyEvent{56, true, 0x12000A, true},
                    SyntheticKeyEvent{54, true, 0x12001A, true}, SyntheticKeyEvent{49, true, 0x12001A, false},
                    SyntheticKeyEvent{49, false, 0x12001A, false},
                    SyntheticKeyEvent{54, false, 0x12000A, true}, // Command is still held on the left
                    SyntheticKeyEvent{56, false, 0x100008, true}, SyntheticKeyEvent{55, false, 0, true}));
}

TEST(SyntheticEventMarker, isPositiveAndStaysTheSame) {
    EXPECT_GT(synthetic_events::marker(), 0);
    EXPECT_EQ(synthetic_events::marker(), synthetic_events::marker());
}

TEST(TapFailureLog, saysEachReasonOnceAndThatItIsOver) {
    fakes::RecordingLog log;
    TapFailureLog failures(log);
    failures.started();
    failures.failed("no display");
    failures.failed("no display");
    failures.failed("refused");
    failures.started();
    failures.started();
    EXPECT_THAT(log.lines, ElementsAre("error ActiveTap: ActiveTap start failed: no display",
                                       "error ActiveTap: ActiveTap start failed: refused",
                                       "info ActiveTap: ActiveTap started after a failure"));
}

} // namespace
} // namespace hopsel
