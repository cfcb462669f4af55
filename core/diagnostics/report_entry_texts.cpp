// The one-line texts of the report and of the list of events, fixed word for word.
#include "core/base/overloaded.h"
#include "core/diagnostics/report_builder.h"

#include <cmath>
#include <cstdio>

namespace hopsel::report_builder {

namespace {

std::string joined(const std::vector<std::string>& texts, std::string_view separator) {
    std::string all;
    for (const std::string& text : texts) {
        if (&text != &texts.front()) all += separator;
        all += text;
    }
    return all;
}

std::string name(ModifierKey key) { return std::string(rawValue(key)); }

std::string keyText(const KeyEventKind& kind) {
    return std::visit(
        Overloaded{
            [](const key_event_kind::ModifierDown& down) { return "modifier 누름 " + name(down.key); },
            [](const key_event_kind::ModifierUp& up) { return "modifier 뗌 " + name(up.key); },
            [](const key_event_kind::KeyDown&) { return std::string("기타 키 누름"); },
            [](const key_event_kind::KeyUp&) { return std::string("기타 키 뗌"); },
            [](const key_event_kind::MouseDown& down) {
                return std::string(down.isWheel ? "마우스 휠" : "마우스 클릭");
            },
        },
        kind);
}

const char* verdictText(KeyVerdict verdict) {
    switch (verdict) {
    case KeyVerdict::passed: return "통과";
    case KeyVerdict::switchRequested: return "전환 요청";
    case KeyVerdict::suppressed: return "Secure Input으로 억제";
    case KeyVerdict::captured: return "키 지정 중";
    case KeyVerdict::shortcutFired: return "조합 키 발동(삼킴)";
    case KeyVerdict::shortcutConsumed: return "조합 키 삼킴(반복/뗌)";
    }
    return "";
}

const char* reasonText(ResetReason reason) {
    switch (reason) {
    case ResetReason::tapDisabled: return "tapDisabled";
    case ResetReason::sleep: return "sleep";
    case ResetReason::wake: return "wake";
    case ResetReason::screenLocked: return "screenLocked";
    case ResetReason::screenUnlocked: return "screenUnlocked";
    case ResetReason::sessionInactive: return "sessionInactive";
    case ResetReason::sessionActive: return "sessionActive";
    case ResetReason::configChanged: return "configChanged";
    case ResetReason::stopped: return "stopped";
    }
    return "";
}

std::string resultText(const SelectResult& result) {
    return std::visit(
        Overloaded{
            [](const select_result::Selected&) { return std::string("selected"); },
            [](const select_result::NotFound&) { return std::string("notFound"); },
            [](const select_result::Failed& failed) { return "failed(" + std::to_string(failed.code) + ")"; },
        },
        result);
}

std::string skipText(const SkipReason& reason) {
    return std::visit(Overloaded{
                          [](const skip_reason::RemoteApp&) {
                              return std::string("원격 앱이 앞에 있어 이 Mac의 입력을 바꾸지 않음");
                          },
                          [](const skip_reason::GuestKeyUnavailable&) {
                              return std::string(
                                  "가상 머신에 한/영 키를 보낼 수 없음: 접근성 권한을 확인하세요");
                          },
                          [](const skip_reason::BrokenSource& broken) {
                              return "없는 소스: " + joined(broken.missing, ", ");
                          },
                      },
                      reason);
}

std::string wholeNumber(double value) {
    char text[320]; // as many digits as the largest finite number has
    // Adding zero takes the sign off a rounded -0.
    const int length = std::snprintf(text, sizeof text, "%.0f", std::round(value) + 0.0);
    return {text, static_cast<std::size_t>(length)};
}

std::string engineText(const EngineEvent& event) {
    return std::visit(
        Overloaded{
            [](const engine_event::StateChanged& changed) {
                return "엔진 상태: " + stateText(changed.state);
            },
            [](const engine_event::Switched& switched) {
                return "전환 성공 " + switched.from.value_or("?") + " → " + switched.to + " (" +
                       (switched.verified ? "검증됨" : "미검증") + ", " + wholeNumber(switched.latencyMs) +
                       " ms)";
            },
            [](const engine_event::SwitchFailed& failed) {
                return "전환 실패 → " + failed.to + " (" + resultText(failed.result) + ")";
            },
            [](const engine_event::SwitchSuppressed&) { return std::string("전환 억제 (secureInput)"); },
            [](const engine_event::RuleSkipped& skipped) {
                return "규칙 건너뜀 (" + skipText(skipped.reason) + ")";
            },
            [](const engine_event::GuestKeySent& sent) {
                return "가상 머신에 한/영 키 전송 (" + triggerText(trigger::Shortcut{sent.key}) + ")";
            },
            [](const engine_event::Reset& reset) { return std::string("리셋: ") + reasonText(reset.reason); },
            [](const engine_event::ShortcutStatusChanged& changed) {
                return "조합 키 탭 상태: " + std::string(statusText(changed.status));
            },
        },
        event);
}

std::string keyEntryText(const diagnostic_kind::Key& key) {
    const std::string held = key.held.empty() ? "없음" : joined(sortedNames(key.held), ", ");
    return keyText(key.kind) + " | 눌린 modifier: " + held + " | " + verdictText(key.verdict);
}

} // namespace

std::string entryText(const DiagnosticKind& kind) {
    return std::visit(
        Overloaded{[](const diagnostic_kind::Key& key) { return keyEntryText(key); },
                   [](const diagnostic_kind::Engine& engine) { return engineText(engine.event); }},
        kind);
}

std::string triggerText(const Trigger& trigger) {
    return std::visit(Overloaded{
                          [](const trigger::ModifierTap& tap) { return "단독 탭: " + name(tap.key); },
                          [](const trigger::Shortcut& shortcut) {
                              return "조합: " + joined(sortedNames(shortcut.key.modifiers), " + ") +
                                     " + keyCode " + std::to_string(shortcut.key.keyCode);
                          },
                      },
                      trigger);
}

std::string warningText(const ConflictWarning& warning) {
    return std::visit(
        Overloaded{
            [](const conflict_warning::TriggerArrivesAsOtherKey& other) {
                return "설정한 전환 키(" + name(other.expected) +
                       ")를 눌렀는데 다른 키가 들어왔습니다. 다른 앱이 키를 바꿨을 수 있습니다.";
            },
            [](const conflict_warning::RepeatedTapDisabled& disabled) {
                return "입력 감지가 짧은 시간에 " + std::to_string(disabled.count) + "번 중단됐습니다.";
            },
            [](const conflict_warning::RepeatedSwitchFailures& failures) {
                return "전환 실패나 검증 실패가 짧은 시간에 " + std::to_string(failures.count) +
                       "번 반복됐습니다.";
            },
        },
        warning);
}

std::string stateText(const EngineState& state) {
    return std::visit(Overloaded{
                          [](const engine_state::Stopped&) { return "stopped"; },
                          [](const engine_state::Running&) { return "running"; },
                          [](const engine_state::Degraded& degraded) {
                              return degraded.reason == DegradedReason::tapDisabled
                                         ? "degraded(tapDisabled)"
                                         : "degraded(permissionMissing)";
                          },
                      },
                      state);
}

std::string_view statusText(ShortcutStatus status) {
    switch (status) {
    case ShortcutStatus::notNeeded: return "notNeeded";
    case ShortcutStatus::running: return "running";
    case ShortcutStatus::unavailable: return "unavailable";
    }
    return "";
}

} // namespace hopsel::report_builder
