#include "core/platform/input_source_switcher.h"

#include "support/fakes/engine_fakes.h"

#include <gmock/gmock.h>
#include <thread>

namespace hopsel {
namespace {

using fakes::FakeCatalog;
using testing::DoubleNear;
using testing::ElementsAre;

class Switcher : public testing::Test {
  protected:
    Switcher() {
        for (const char* id : {"A", "B", "C"}) catalog->sources.push_back({id, id, "", {}, true});
        catalog->current = "A";
    }

    InputSourceSwitcher::Clock clock() {
        return [this] { return time.now; };
    }
    InputSourceSwitcher::RunLoop runLoop() {
        return [this](double seconds) {
            pumped.push_back(seconds);
            time.advance(seconds);
        };
    }

    fakes::VirtualTime time;
    std::shared_ptr<FakeCatalog> catalog = std::make_shared<FakeCatalog>();
    std::vector<double> pumped;
    InputSourceSwitcher switcher{*catalog, clock(), runLoop()};
};

TEST_F(Switcher, looksBeforeItWaits) {
    EXPECT_EQ(switcher.switchTo("B", std::nullopt, 0.5),
              (SwitchOutcome{"B", select_result::Selected{}, true, 0}));
    EXPECT_TRUE(pumped.empty());
}

TEST_F(Switcher, waitsInStepsUntilThePlatformReportsTheSourceOrTheTimeIsOver) {
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
    LiveInputSourceService service(catalog, clock(), runLoop());
    EXPECT_THAT(service.availableSourceIDs(), ElementsAre("A", "B", "C"));
    EXPECT_EQ(service.currentID(), "A");
    EXPECT_THAT(service.switchTo("B").latencyMs, DoubleNear(500, 5.1));
}

} // namespace
} // namespace hopsel
