#include "core/diagnostics/conflict_analyzer.h"

#include <algorithm>
#include <cmath>

namespace hopsel::conflict_analyzer {

namespace {

const EngineEvent* engineEvent(const DiagnosticEntry& entry) {
    const auto* engine = std::get_if<diagnostic_kind::Engine>(&entry.kind);
    return engine != nullptr ? &engine->event : nullptr;
}

bool isTapDisabled(const EngineEvent& event) {
    const auto* reset = std::get_if<engine_event::Reset>(&event);
    return reset != nullptr && reset->reason == ResetReason::tapDisabled;
}

bool isSwitchFailure(const EngineEvent& event) {
    const auto* switched = std::get_if<engine_event::Switched>(&event);
    return std::holds_alternative<engine_event::SwitchFailed>(event) ||
           (switched != nullptr && !switched->verified);
}

int densestCount(const DiagnosticEntries& entries, bool (*counts)(const EngineEvent&)) {
    std::vector<double> times;
    for (const DiagnosticEntry& entry : entries) {
        const EngineEvent* event = engineEvent(entry);
        if (event != nullptr && counts(*event)) times.push_back(entry.time);
    }
    return maxInWindow(std::move(times));
}

} // namespace

std::vector<ConflictWarning> warnings(const DiagnosticEntries& entries, std::optional<Probe> probe) {
    std::vector<ConflictWarning> found;
    if (probe && probe->result == ProbeResult::arrivedAsOtherKey)
        found.emplace_back(conflict_warning::TriggerArrivesAsOtherKey{probe->trigger});
    if (const int count = densestCount(entries, isTapDisabled); count >= threshold)
        found.emplace_back(conflict_warning::RepeatedTapDisabled{count});
    if (const int count = densestCount(entries, isSwitchFailure); count >= threshold)
        found.emplace_back(conflict_warning::RepeatedSwitchFailures{count});
    return found;
}

ProbeResult probe(const DiagnosticEntries& entries, ModifierKey trigger) {
    bool otherKeyArrived = false;
    for (const DiagnosticEntry& entry : entries) {
        const auto* key = std::get_if<diagnostic_kind::Key>(&entry.kind);
        if (key == nullptr) continue;
        const auto* modifier = std::get_if<key_event_kind::ModifierDown>(&key->kind);
        if (modifier != nullptr && modifier->key == trigger) return ProbeResult::received;
        if (modifier != nullptr || std::holds_alternative<key_event_kind::KeyDown>(key->kind))
            otherKeyArrived = true;
    }
    return otherKeyArrived ? ProbeResult::arrivedAsOtherKey : ProbeResult::noSignal;
}

int maxInWindow(std::vector<double> times) {
    times.erase(std::remove_if(times.begin(), times.end(), [](double time) { return !std::isfinite(time); }),
                times.end());
    std::sort(times.begin(), times.end());
    std::ptrdiff_t most = 0;
    auto last = times.begin();
    for (auto first = times.begin(); first != times.end(); ++first) {
        while (last != times.end() && *last - *first <= windowSeconds) ++last;
        most = std::max(most, last - first);
    }
    return static_cast<int>(most);
}

} // namespace hopsel::conflict_analyzer
