#include "core/diagnostics/report_builder.h"

#include <array>
#include <cmath>
#include <cstdio>

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
    // As many characters as the largest finite number has, and room for sign and decimals. (std::to_chars for
    // numbers like this came to macOS with 13.3.)
    std::array<char, 330> text{};
    const int length = std::snprintf(text.data(), text.size(), "%+7.2f", seconds);
    std::string result(text.data(), static_cast<std::size_t>(length));
    const std::size_t point = result.find_first_not_of(" +-0123456789");
    if (std::isfinite(seconds) && point != std::string::npos)
        result.replace(point, result.size() - point - 2, ".");
    return result;
}

Lines entryLines(const DiagnosticEntries& entries) {
    if (entries.empty()) return {"(기록 없음 — 진단 탭을 연 뒤 문제를 다시 재현하면 이벤트가 기록됩니다)"};
    Lines lines;
    for (const DiagnosticEntry& entry : entries)
        lines.push_back(relativeTime(entry.time - entries.back().time) + "  " + entryText(entry.kind));
    return lines;
}

/// Names and identifiers come from outside; none of them may begin a line that looks like one of ours.
std::string oneLine(std::string line) {
    for (const std::string_view end : {"\r", "\n", "\v", "\f", "\xC2\x85", "\xE2\x80\xA8", "\xE2\x80\xA9"}) {
        for (auto at = line.find(end); at != std::string::npos; at = line.find(end, at))
            line.replace(at, end.size(), " ");
    }
    return line;
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
    for (const std::string& line : lines) text += oneLine(line) + '\n';
    return text;
}

} // namespace hopsel::report_builder
