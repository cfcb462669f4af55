#include "core/engine/switch_planner.h"

namespace hopsel::switch_planner {

std::string target(const std::string& sourceA, const std::string& sourceB,
                   const std::optional<std::string>& current, const std::optional<PendingSwitch>& pending,
                   double now) {
    const bool pendingCounts = pending && pending->at <= now && now - pending->at <= pendingTTL;
    const bool isAtA = pendingCounts ? pending->target == sourceA : current == sourceA;
    return isAtA ? sourceB : sourceA;
}

} // namespace hopsel::switch_planner
