#include "platform/linux/latin_start/fcitx_latin_start.h"

#include <algorithm>
#include <array>

namespace hopsel {

namespace {

struct Row {
    std::string_view method;
    std::string_view section; ///< of its file
    std::string_view key;
    std::array<std::string_view, 3> latin;
};

constexpr std::array rows{
    Row{"mozc", "", "InitialMode", {"Direct", "Half ASCII", "Full ASCII"}},
    Row{"anthy", "General", "InputMode", {"Latin", "Wide Latin", ""}},
    Row{"kkc", "", "InitialInputMode", {"Latin", "Wide latin", "Direct input"}},
    Row{"skk", "", "InitialInputMode", {"Latin", "Wide latin", ""}},
};

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::string_view unquoted(std::string_view text) {
    const bool isQuoted = text.size() >= 2 && text.front() == '"' && text.back() == '"';
    return isQuoted ? text.substr(1, text.size() - 2) : text;
}

/// Empty if it is not there.
std::string_view valueIn(std::string_view text, std::string_view section, std::string_view key) {
    std::string_view here;
    while (!text.empty()) {
        const std::string_view whole = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(text.size(), whole.size() + 1));
        const std::string_view line = trimmed(whole);
        const std::size_t equals = line.find('=');
        if (line.empty() || line.front() == '#') continue;
        if (line.front() == '[')
            here = line.substr(1, line.find(']') - 1);
        else if (here == section && equals != std::string_view::npos &&
                 trimmed(line.substr(0, equals)) == key)
            return unquoted(trimmed(line.substr(equals + 1)));
    }
    return {};
}

} // namespace

SourceLimit fcitxLatinStart(std::string_view method,
                            const std::function<std::string(std::string_view method)>& settingsOf) {
    const auto row = std::find_if(rows.begin(), rows.end(), [&](const Row& r) { return r.method == method; });
    if (row == rows.end()) return SourceLimit::none;
    const std::string text = settingsOf(method);
    const std::string_view value = valueIn(text, row->section, row->key);
    const bool isLatin =
        !value.empty() && std::find(row->latin.begin(), row->latin.end(), value) != row->latin.end();
    return isLatin ? SourceLimit::startsInLatin : SourceLimit::none;
}

} // namespace hopsel
