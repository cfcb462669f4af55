// Counts what a framework reports, puts its answers into a form that is easily compared, and lets its daemon
// die in the middle of a switch.
#pragma once

#include "core/platform/input_source_switcher.h"
#include "platform/linux/base/main_loop.h"
#include "platform/linux/sources/input_framework.h"
#include "platform/linux/sources/platform_errors.h"
#include "session/child_process.h"
#include "support/qt_waiting.h"

#include <QCoreApplication>
#include <QTimer>
#include <csignal>
#include <gmock/gmock.h>
#include <string>
#include <type_traits>
#include <vector>

namespace hopsel::test {

using Strings = std::vector<std::string>;

inline const SelectResult accepted = select_result::Selected{};
inline const SelectResult notFound = select_result::NotFound{};
inline const SelectResult gone = select_result::Failed{platform_error::frameworkGone};
inline const SelectResult refused = select_result::Failed{platform_error::frameworkRefused};

/// Lets the sources retry while they need it, as the program does every so often, until the condition holds.
template <class Sources>
bool retryUntil(Sources& sources, const std::function<bool()>& condition) {
    return runLoopUntil([&] {
        bool isNeeded = false;
        if constexpr (std::is_base_of_v<InputFramework, Sources>)
            isNeeded = sources.retries() != InputFramework::Retries::never;
        else
            isNeeded = sources.needsRetry();
        if (isNeeded) sources.retry();
        return runLoopUntil(condition, std::chrono::milliseconds(50));
    });
}

struct FrameworkWatch {
    explicit FrameworkWatch(InputFramework& watched) : framework(watched) {
        framework.onSourcesChanged = [this] { ++sources; };
        framework.onSelectedChanged = [this] { ++selected; };
        framework.onInChargeChanged = [this] { ++inCharge; };
    }
    Strings ids() const {
        Strings result;
        for (const InputSourceInfo& source : framework.enabledKeyboardSources()) result.push_back(source.id);
        return result;
    }
    bool lists(const Strings& expected) const {
        return runLoopUntil([&] { return ids() == expected; });
    }
    bool becomesCurrent(const std::optional<std::string>& id) const {
        return runLoopUntil([&] { return framework.currentID() == id; });
    }
    bool isRefused(const SelectResult& reason) const {
        return runLoopUntil([&] { return framework.refusal().has_value(); }) && framework.refusal() == reason;
    }
    bool comesInCharge(bool isInCharge = true) const {
        return runLoopUntil([&] { return framework.isInCharge() == isInCharge; });
    }

    InputFramework& framework;
    int sources = 0;
    int selected = 0;
    int inCharge = 0;
};

/// Switches until the daemon has died of it, and has the switch end at once then. In every other round the
/// daemon hangs at first, so that it dies while it is waited for; else it is killed before, within or after.
inline void expectSwitchEndsWithDaemon(InputSourceService& service, session::ChildProcess& daemon, int round,
                                       const std::string& one, const std::string& other) {
    SCOPED_TRACE(round);
    const bool isHung = round % 2 == 0;
    if (isHung) daemon.kill(SIGSTOP);
    QTimer::singleShot(isHung ? 20 : round % 10, Qt::PreciseTimer, qApp, [&] { daemon.kill(SIGKILL); });
    SwitchOutcome outcome;
    do {
        outcome = service.switchTo(outcome.requested == one ? other : one);
        EXPECT_EQ(outcome.verified, outcome.result == accepted);
        EXPECT_LT(outcome.latencyMs, 400);
    } while (outcome.result == accepted);
    EXPECT_EQ(outcome.result, gone);
    EXPECT_TRUE(!isHung || outcome.latencyMs > 1) << "was not waited for";
}

} // namespace hopsel::test
