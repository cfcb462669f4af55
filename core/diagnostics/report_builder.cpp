#include "core/diagnostics/report_builder.h"

#include <array>
#include <charconv>
#include <cmath>

namespace hopsel::report_builder {

namespace {

using Lines = std::vector<std::string>;

constexpr const char* nothing = "(없음)";

std::string granted(bool isGranted) { return isGranted ? "허용" : "미허용"; }

void addSection(Lines& lines, std::string_view title, const Lines& content) {
    lines.insert(lines.end(), {"", std::string(title)});
    if (content.empty())
        lines.emplace_back(nothing);
    else
        lines.insert(lines.end(), content.begin(), content.end());
}

Lines ruleLines(const std::vector<ReportRule>& rules) {
    Lines lines;
    for (const ReportRule& rule : rules) {
        lines.push_back(std::to_string(lines.size() + 1) + ". " + (rule.enabled ? "사용" : "끔") + " | " +
                        triggerText(rule.trigger) + " | " + rule.sourceA + " ⇄ " + rule.sourceB);
    }
    return lines;
}

/// "%+7.2f" with a point in every locale.
std::string relativeTime(double seconds) {
    // As many digits as the largest finite number has, and room for the decimals.
    std::array<char, 330> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), std::fabs(seconds),
                                   std::chars_format::fixed, 2);
    std::string text = (std::signbit(seconds) ? "-" : "+") + std::string(digits.data(), end.ptr);
    constexpr std::size_t width = 7;
    if (text.size() < width) text.insert(0, width - text.size(), ' ');
    return text;
}

Lines entryLines(const DiagnosticEntries& entries) {
    if (entries.empty()) return {"(기록 없음 — 진단 탭을 연 뒤 문제를 다시 재현하면 이벤트가 기록됩니다)"};
    Lines lines;
    for (const DiagnosticEntry& entry : entries)
        lines.push_back(relativeTime(entry.time - entries.back().time) + "  " + entryText(entry.kind));
    return lines;
}

} // namespace

std::string build(const ReportInput& input) {
    Lines lines{
        "Hopsel 버그 리포트",
        "(입력한 글자와 문자 키 코드는 포함되지 않습니다)",
        "",
        "생성: " + input.generatedAt,
        "버전: " + input.appVersion,
        "macOS: " + input.macOSVersion + " (" + input.architecture + ")",
        "권한: 입력 모니터링 " + granted(input.inputMonitoringGranted) + " / 접근성 " +
            granted(input.accessibilityGranted),
        "엔진: " + stateText(input.engineState) +
            " / 조합 키 탭: " + std::string(statusText(input.shortcutStatus)),
    };
    addSection(lines, "[규칙 요약]", ruleLines(input.rules));
    Lines apps;
    for (const std::string& name : input.detectedApps) apps.push_back("- " + name);
    addSection(lines, "[감지된 입력 관련 앱]", apps);
    Lines warnings;
    for (const ConflictWarning& warning : input.warnings) warnings.push_back("- " + warningText(warning));
    addSection(lines, "[경고]", warnings);
    addSection(lines, "[최근 이벤트] (마지막 이벤트 기준 상대 시간, 초)", entryLines(input.entries));

    std::string text;
    for (const std::string& line : lines) text += line + '\n';
    return text;
}

} // namespace hopsel::report_builder
