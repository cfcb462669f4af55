#include "core/platform/linux/main_loop.h"

#include "support/qt_waiting.h"

#include <QCoreApplication>
#include <QObject>
#include <QSocketNotifier>
#include <QTimer>
#include <array>
#include <gmock/gmock.h>
#include <unistd.h>

namespace hopsel {
namespace {

using namespace std::chrono_literals;
using test::runLoopUntil;
using testing::ElementsAre;

/// Longer than any wait that should end early; a test that waits it out fails by its clock.
constexpr double longWait = 5;

TEST(Schedule, RunsOnALaterTurnInOrder) {
    std::vector<int> order;
    schedule([&] {
        order.push_back(1);
        schedule([&] { order.push_back(3); });
    });
    schedule([&] { order.push_back(2); });
    EXPECT_TRUE(order.empty());
    EXPECT_TRUE(runLoopUntil([&] { return order.size() == 3; }));
    EXPECT_THAT(order, ElementsAre(1, 2, 3));
}

TEST(RunFor, WaitsTheWholeTimeWhenNothingHappens) {
    runFor(0); // whatever an earlier test left behind
    runFor(0);
    const double start = uptimeSeconds();
    runFor(0.05);
    EXPECT_GE(uptimeSeconds() - start, 0.05);
    const clock_t processorTime = clock();
    for (int i = 0; i < 10; ++i) runFor(0.01);
    EXPECT_LT(clock() - processorTime, CLOCKS_PER_SEC / 20) << "it spins instead of waiting";
}

TEST(RunFor, ReturnsAsSoonAsADescriptorWasHandled) {
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    int handled = 0;
    {
        QSocketNotifier notifier(ends[0], QSocketNotifier::Read);
        QObject::connect(&notifier, &QSocketNotifier::activated, &notifier, [&] {
            ++handled;
            notifier.setEnabled(false);
        });
        QTimer::singleShot(20, &notifier, [&] { EXPECT_EQ(write(ends[1], "x", 1), 1); });
        const double start = uptimeSeconds();
        for (int turns = 0; handled == 0 && turns < 10; ++turns) runFor(longWait);
        EXPECT_EQ(handled, 1);
        EXPECT_LT(uptimeSeconds() - start, longWait);
    }
    close(ends[0]);
    close(ends[1]);
}

// The loop must not go on to wait in the turn in which it handled what was posted before the call.
TEST(RunFor, ReturnsAsSoonAsAPostedFunctionRan) {
    bool ran = false;
    schedule([&] { ran = true; });
    const double start = uptimeSeconds();
    for (int turns = 0; !ran && turns < 10; ++turns) runFor(longWait);
    EXPECT_TRUE(ran);
    EXPECT_LT(uptimeSeconds() - start, longWait);
}

TEST(RunFor, CanRunInsideAScheduledFunction) {
    std::vector<int> order;
    schedule([&] {
        schedule([&] { order.push_back(1); });
        for (int turns = 0; order.empty() && turns < 10; ++turns) runFor(longWait);
        order.push_back(2);
    });
    EXPECT_TRUE(runLoopUntil([&] { return order.size() == 2; }));
    EXPECT_THAT(order, ElementsAre(1, 2));
}

// A quit during a wait must end the program's loop, and must neither be lost nor turn later waits into
// spinning.
TEST(RunFor, KeepsAQuitForTheLoopThatCalled) {
    int turnsAfterQuit = 0;
    bool quitAsked = false;
    schedule([&] {
        QTimer::singleShot(5, [&] {
            quitAsked = true;
            QCoreApplication::quit();
        });
        while (!quitAsked) runFor(longWait);
        const double end = uptimeSeconds() + 0.1;
        for (; uptimeSeconds() < end; ++turnsAfterQuit) runFor(0.005);
    });
    const double start = uptimeSeconds();
    EXPECT_EQ(QCoreApplication::exec(), 0);
    EXPECT_TRUE(quitAsked);
    EXPECT_LE(turnsAfterQuit, 25);
    EXPECT_LT(uptimeSeconds() - start, longWait);
}

} // namespace
} // namespace hopsel
