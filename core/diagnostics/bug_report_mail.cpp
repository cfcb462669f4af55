#include "core/diagnostics/bug_report_mail.h"

namespace hopsel::bug_report_mail {

namespace {

constexpr std::string_view body =
    "어떤 문제가 있었는지 한두 줄 적고, 클립보드에 복사된 리포트를 이 아래에 붙여넣어 주세요";

// What RFC 3986 allows in a query, without the two that separate its items.
bool staysInQuery(char letter) {
    constexpr std::string_view marks = "-._~!$'()*+,;:@/?";
    return (letter >= '0' && letter <= '9') || (letter >= 'A' && letter <= 'Z') ||
           (letter >= 'a' && letter <= 'z') || marks.find(letter) != std::string_view::npos;
}

std::string percentEncoded(std::string_view text) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string encoded;
    for (const char letter : text) {
        if (staysInQuery(letter)) {
            encoded += letter;
            continue;
        }
        const auto byte = static_cast<unsigned char>(letter);
        encoded += {'%', digits[byte >> 4U], digits[byte & 0xFU]};
    }
    return encoded;
}

} // namespace

std::string composeURL(std::string_view appVersion, std::string_view pasteKeys) {
    const std::string subject = "Hopsel 버그 리포트 (" + std::string(appVersion) + ")";
    return "mailto:" + std::string(recipient) + "?subject=" + percentEncoded(subject) +
           "&body=" + percentEncoded(std::string(body) + " (" + std::string(pasteKeys) + ").\n\n");
}

std::string suggestedFileName(std::string_view date) { return "Hopsel-report-" + std::string(date) + ".txt"; }

} // namespace hopsel::bug_report_mail
