#include "model/texts/event_texts.h"

#include "core/base/overloaded.h"
#include "core/diagnostics/report_builder.h"
#include "model/texts/system_words.h"

#include <algorithm>
#include <cmath>

namespace hopsel::l10n {

namespace {

std::string in(const char* korean, const char* english) {
    return language() == L10nLanguage::ko ? korean : english;
}

std::string keyText(const KeyEventKind& kind) {
    return std::visit(
        Overloaded{
            [](const key_event_kind::ModifierDown& down) {
                return keyName(down.key) + in(" 누름", " pressed");
            },
            [](const key_event_kind::ModifierUp& up) { return keyName(up.key) + in(" 뗌", " released"); },
            [](const key_event_kind::KeyDown&) { return in("다른 키 누름", "Another key pressed"); },
            [](const key_event_kind::KeyUp&) { return in("다른 키 뗌", "Another key released"); },
            [](const key_event_kind::MouseDown& down) {
                return down.isWheel ? in("마우스 휠", "Mouse wheel") : in("마우스 클릭", "Mouse click");
            },
        },
        kind);
}

std::string verdictText(KeyVerdict verdict) {
    switch (verdict) {
    case KeyVerdict::passed: return in("통과", "passed on");
    case KeyVerdict::switchRequested: return in("전환 요청", "switch requested");
    case KeyVerdict::suppressed:
        return in("암호 입력 중이라 전환하지 않음", "held back, a password is being typed");
    case KeyVerdict::captured: return in("키 지정 중", "being set as a key");
    case KeyVerdict::shortcutFired: return in("조합 키 동작", "combination recognized");
    case KeyVerdict::shortcutConsumed: return in("조합 키의 반복이나 뗌", "rest of a combination");
    }
    return {};
}

std::string keyEntryText(const diagnostic_kind::Key& key) {
    std::string held;
    for (const ModifierKey modifier : sortedByName(key.held))
        held += (held.empty() ? "" : ", ") + keyName(modifier);
    return keyText(key.kind) + (held.empty() ? "" : " | " + in("눌린 키: ", "held: ") + held) + " | " +
           verdictText(key.verdict);
}

std::string stateText(const EngineState& state) {
    return std::visit(Overloaded{[](const engine_state::Stopped&) { return in("멈춤", "stopped"); },
                                 [](const engine_state::Running&) { return in("동작 중", "running"); },
                                 [](const engine_state::Degraded& degraded) {
                                     return degraded.reason == DegradedReason::tapDisabled
                                                ? in("키 감지가 중단됨", "key detection stopped")
                                                : in("키보드를 감지할 수 없음",
                                                     "cannot listen to the keyboard");
                                 }},
                      state);
}

std::string statusText(ShortcutStatus status) {
    switch (status) {
    case ShortcutStatus::notNeeded: return in("필요 없음", "not needed");
    case ShortcutStatus::running: return in("동작 중", "working");
    case ShortcutStatus::unavailable: return in("일부 또는 전부 사용할 수 없음", "not all available");
    }
    return {};
}

std::string resetText(ResetReason reason) {
    switch (reason) {
    case ResetReason::tapDisabled: return in("키 감지가 중단됨", "key detection was interrupted");
    case ResetReason::sleep: return in("잠자기", "sleep");
    case ResetReason::wake: return in("잠자기에서 깨어남", "wake-up");
    case ResetReason::screenLocked: return in("화면 잠김", "screen locked");
    case ResetReason::screenUnlocked: return in("화면 잠금 해제", "screen unlocked");
    case ResetReason::sessionInactive: return in("다른 사용자로 전환", "another session in front");
    case ResetReason::sessionActive: return in("이 사용자로 돌아옴", "this session in front again");
    case ResetReason::configChanged: return in("규칙이 바뀜", "rules changed");
    case ResetReason::stopped: return in("멈춤", "stopped");
    }
    return {};
}

std::string resultText(const SelectResult& result) {
    return std::visit(Overloaded{[](const select_result::Selected&) { return in("선택됨", "selected"); },
                                 [](const select_result::NotFound&) {
                                     return in("없는 입력 소스", "no such input source");
                                 },
                                 [](const select_result::Failed& failed) {
                                     return in("오류 ", "error ") + std::to_string(failed.code);
                                 }},
                      result);
}

std::string skipText(const SkipReason& reason, const SourceNames& sourceName) {
    return std::visit(Overloaded{[](const skip_reason::RemoteApp&) {
                                     return in("원격 프로그램이 앞에 있음", "a remote desktop is in front");
                                 },
                                 [](const skip_reason::GuestKeyUnavailable&) {
                                     return in("가상 머신에 한/영 키를 보낼 수 없음",
                                               "the switch key cannot be sent to the virtual machine");
                                 },
                                 [&](const skip_reason::BrokenSource& broken) {
                                     std::string missing;
                                     for (const std::string& id : broken.missing)
                                         missing += (missing.empty() ? "" : ", ") + sourceName(id);
                                     return in("없는 입력 소스: ", "input source not found: ") + missing;
                                 }},
                      reason);
}

std::string switchedText(const engine_event::Switched& switched, const SourceNames& sourceName) {
    return in("전환: ", "Switched: ") + (switched.from ? sourceName(*switched.from) : "?") + " → " +
           sourceName(switched.to) + " (" +
           (switched.verified ? in("확인됨", "verified") : in("확인 안 됨", "not verified")) + ", " +
           std::to_string(std::llround(std::clamp(switched.latencyMs, 0.0, 1e6))) + " ms)";
}

std::string engineText(const EngineEvent& event, const SourceNames& sourceName) {
    return std::visit(
        Overloaded{
            [](const engine_event::StateChanged& changed) {
                return in("입력 전환: ", "Input switching: ") + stateText(changed.state);
            },
            [&](const engine_event::Switched& switched) { return switchedText(switched, sourceName); },
            [&](const engine_event::SwitchFailed& failed) {
                return in("전환 실패: ", "Switch failed: ") + sourceName(failed.to) + " (" +
                       resultText(failed.result) + ")";
            },
            [](const engine_event::SwitchSuppressed&) {
                return in("전환하지 않음: 암호 입력 중", "Not switched: a password is being typed");
            },
            [&](const engine_event::RuleSkipped& skipped) {
                return in("전환하지 않음: ", "Not switched: ") + skipText(skipped.reason, sourceName);
            },
            [](const engine_event::GuestKeySent& sent) {
                return in("가상 머신에 보낸 키: ", "Sent to the virtual machine: ") + shortcutName(sent.key);
            },
            [](const engine_event::Reset& reset) {
                return in("눌린 키를 잊음: ", "Held keys forgotten: ") + resetText(reset.reason);
            },
            [](const engine_event::ShortcutStatusChanged& changed) {
                return in("조합 키: ", "Combinations: ") + statusText(changed.status);
            },
        },
        event);
}

} // namespace

std::string eventText(const DiagnosticKind& kind, const SourceNames& sourceName) {
    if (!systemWords().translatesEvents) return report_builder::entryText(kind);
    return std::visit(Overloaded{[](const diagnostic_kind::Key& key) { return keyEntryText(key); },
                                 [&](const diagnostic_kind::Engine& engine) {
                                     return engineText(engine.event, sourceName);
                                 }},
                      kind);
}

} // namespace hopsel::l10n
