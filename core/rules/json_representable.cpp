#include "core/rules/json_representable.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <locale>
#include <optional>
#include <sstream>

namespace hopsel::json_representable {
namespace {

constexpr std::size_t escapeLength = 6; // \u0000

/// The number of the \u escape at the position; nothing if there is none.
std::optional<unsigned> escapeAt(const std::string& text, std::size_t at) {
    if (text.size() - at < escapeLength || text[at] != '\\' || text[at + 1] != 'u') return std::nullopt;
    unsigned code = 0;
    const char* const digits = text.data() + at + 2;
    const auto [end, error] = std::from_chars(digits, digits + 4, code, 16);
    if (error != std::errc() || end != digits + 4) return std::nullopt;
    return code;
}

bool isFirstHalf(std::optional<unsigned> code) { return code && *code >= 0xD800 && *code <= 0xDBFF; }
bool isSecondHalf(std::optional<unsigned> code) { return code && *code >= 0xDC00 && *code <= 0xDFFF; }

/// Behind the escape that begins at the position.
std::size_t passEscape(std::string& text, std::size_t at) {
    const auto code = escapeAt(text, at);
    if (!code) return at + 2;
    const std::size_t next = at + escapeLength;
    if (isFirstHalf(code) && isSecondHalf(escapeAt(text, next))) return next + escapeLength;
    if (isFirstHalf(code) || isSecondHalf(code)) text.replace(at, escapeLength, "\\uffff");
    return next;
}

/// Behind the string that begins at the position.
std::size_t passString(std::string& text, std::size_t at) {
    for (++at; at < text.size() && text[at] != '"';) at = text[at] == '\\' ? passEscape(text, at) : at + 1;
    return at + 1;
}

bool isBoundless(const std::string& number) {
    constexpr std::size_t safeLength = std::numeric_limits<double>::max_exponent10;
    if (number.size() <= safeLength && number.find_first_of("eE") == std::string::npos) return false;
    std::istringstream stream(number);
    stream.imbue(std::locale::classic());
    double value = 0;
    stream >> value;
    return stream.fail() && std::fabs(value) == std::numeric_limits<double>::max();
}

/// Behind the number that begins at the position.
std::size_t passNumber(std::string& text, std::size_t at) {
    const std::size_t end = std::min(text.find_first_not_of("0123456789+-.eE", at), text.size());
    static constexpr std::string_view stand = "0.5"; // the shortest number without bounds has five bytes
    if (isBoundless(text.substr(at, end - at)))
        text.replace(at, end - at, std::string(stand) + std::string(end - at - stand.size(), ' '));
    return end;
}

} // namespace

std::string replacing(std::string_view text) {
    std::string replaced(text);
    for (std::size_t at = 0; at < replaced.size();) {
        const char next = replaced[at];
        if (next == '"')
            at = passString(replaced, at);
        else if (next == '-' || (next >= '0' && next <= '9'))
            at = passNumber(replaced, at);
        else
            ++at;
    }
    return replaced;
}

} // namespace hopsel::json_representable
