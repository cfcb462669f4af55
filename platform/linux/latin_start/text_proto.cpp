#include "platform/linux/latin_start/text_proto.h"

#include <algorithm>

namespace hopsel {

namespace {

constexpr std::string_view blanks = " \t\r\n,;";
constexpr std::string_view marks = "{}<>:#\"'";

/// The next mark, quoted text or word, comments left out; empty at the end.
struct Token {
    std::string_view text;
    bool isWord = false; ///< or quoted text
};

Token take(std::string_view& rest) {
    while (true) {
        rest.remove_prefix(std::min(rest.size(), rest.find_first_not_of(blanks)));
        if (rest.empty()) return {};
        if (rest.front() != '#') break;
        rest.remove_prefix(std::min(rest.size(), rest.find('\n')));
    }
    const char first = rest.front();
    if (first == '"' || first == '\'') {
        const std::string_view quoted = rest.substr(1, rest.find(first, 1) - 1);
        rest.remove_prefix(std::min(rest.size(), quoted.size() + 2));
        return {quoted, true};
    }
    const bool isMark = marks.find(first) != std::string_view::npos;
    const std::size_t end = isMark ? 1 : std::min(rest.size(), rest.find_first_of(" \t\r\n,;{}<>:#\"'"));
    const Token token{rest.substr(0, end), !isMark};
    rest.remove_prefix(end);
    return token;
}

} // namespace

std::vector<TextProtoField> textProtoFields(std::string_view text) {
    std::vector<TextProtoField> fields;
    Token name;
    bool isValueNext = false;
    while (!text.empty()) {
        const Token token = take(text);
        if (isValueNext && token.isWord) fields.push_back({std::string(name.text), std::string(token.text)});
        isValueNext = token.text == ":" && !token.isWord && name.isWord;
        if (!isValueNext) name = token;
    }
    return fields;
}

} // namespace hopsel
