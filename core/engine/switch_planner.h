// Which of the two sources of a toggle is next. Pure.
#pragma once

#include <optional>
#include <string>

namespace hopsel {

/// The last switch that the platform accepted but did not confirm in time.
struct PendingSwitch {
    std::string target; ///< identifier of the source that was asked for
    double at = 0;      ///< engine clock when the switch call returned
    friend bool operator==(const PendingSwitch&, const PendingSwitch&) = default;
};

namespace switch_planner {

/// For how many seconds a pending switch counts more than what the platform reports as current.
inline constexpr double pendingTTL = 1.0;

/// Source B when the current, or just requested, source is A; else A. The pending switch makes a second quick
/// trigger toggle from what was asked for, not from what a slow platform still reports.
std::string target(const std::string& sourceA, const std::string& sourceB,
                   const std::optional<std::string>& current, const std::optional<PendingSwitch>& pending,
                   double now);

} // namespace switch_planner
} // namespace hopsel
