#include "platform/linux/base/main_loop.h"

#include "support/qt_waiting.h"

#include <QCoreApplication>
#include <QTimer>
#include <gmock/gmock.h>

namespace hopsel {
namespace {

/// Longer than any wait that should end early.
constexpr double longWait = 5;

/// Whether waiting returns at what makes the condition true, and not by the clock.
bool waitEndsAt(const std::function<bool()>& condition) {
    const double start = uptimeSeconds();
    while (!condition() && uptimeSeconds() - start < longWait) runFor(longWait);
    return uptimeSeconds() - start < longWait;
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

// The loop must not go on to wait in the turn in which it handled what was posted before the call, also when
// the wait is inside a scheduled function.
TEST(RunFor, ReturnsAsSoonAsAPostedFunctionRan) {
    int ran = 0;
    schedule([&] { ++ran; });
    EXPECT_EQ(ran, 0);
    EXPECT_TRUE(waitEndsAt([&] { return ran == 1; }));
    schedule([&] {
        schedule([&] { ++ran; });
        EXPECT_TRUE(waitEndsAt([&] { return ran == 2; }));
        ++ran;
    });
    EXPECT_TRUE(test::runLoopUntil([&] { return ran == 3; }));
}

TEST(RunScheduled, RunsEverythingOnceInOrderAlsoWhatComesMeanwhile) {
    std::string ran;
    schedule([&] { ran += 'a'; });
    putOff([&] {
        putOff([&] { ran += 'd'; });
        ran += 'b';
    });
    putOff([&] { ran += 'c'; });
    EXPECT_EQ(ran, "");
    runScheduled();
    EXPECT_EQ(ran, "abcd");
    runScheduled();
    putOff([&] {
        schedule([&] { ran += 'e'; });
        EXPECT_TRUE(waitEndsAt([&] { return ran == "abcde"; }));
    });
    runScheduled();
}

// An end that is asked for during a wait must reach the program's loop at once, and must neither be lost nor
// turn later waits into spinning.
TEST(RunFor, KeepsAnEndForTheLoopThatCalled) {
    for (void (*end)() : {QCoreApplication::quit, +[] { QCoreApplication::exit(); }}) {
        int turnsAfterEnd = 0;
        bool isAsked = false;
        schedule([&] {
            QTimer::singleShot(5, [&] {
                isAsked = true;
                end();
            });
            EXPECT_TRUE(waitEndsAt([&] { return isAsked; }));
            const double later = uptimeSeconds() + 0.1;
            for (; uptimeSeconds() < later; ++turnsAfterEnd) runFor(0.005);
        });
        bool isLate = false;
        QTimer wakesTheLoop; // or it hangs for ever
        QObject::connect(&wakesTheLoop, &QTimer::timeout, [&] { isLate = true; });
        wakesTheLoop.start(5000);
        EXPECT_EQ(QCoreApplication::exec(), 0);
        EXPECT_FALSE(isLate);
        EXPECT_LE(turnsAfterEnd, 25);
    }
}

} // namespace
} // namespace hopsel
