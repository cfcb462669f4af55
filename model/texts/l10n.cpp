#include "model/texts/l10n.h"

#include "core/base/product.h"
#include "core/platform/identifier_prefix.h"
#include "model/texts/system_words.h"

#include <algorithm>
#include <array>

namespace hopsel::l10n {

namespace {

struct Row {
    std::string_view name;
    std::string_view korean;
    std::string_view english;
};

constexpr std::array table{
#define TEXT(key, korean, english) Row{#key, korean, english},
#include "model/texts/added_texts.def"
#include "model/texts/texts.def"
#undef TEXT
};

const Row& row(Key key) { return table[static_cast<std::size_t>(key)]; }

SystemWords& chosenWords() {
    static SystemWords words;
    return words;
}

std::string_view text(Key key) {
    if (const auto& own = systemWords().text)
        if (const char* words = own(key, language())) return words;
    return language() == L10nLanguage::en ? row(key).english : row(key).korean;
}

PreferredLanguages& preferredLanguages() {
    static PreferredLanguages reader;
    return reader;
}

L10nLanguage& chosenLanguage() {
    static L10nLanguage chosen =
        detect(preferredLanguages() ? preferredLanguages()() : std::vector<std::string>());
    return chosen;
}

} // namespace

const std::vector<Key>& allKeys() {
    static const std::vector<Key> keys = [] {
        std::vector<Key> all(table.size());
        for (std::size_t i = 0; i < table.size(); ++i) all[i] = static_cast<Key>(i);
        return all;
    }();
    return keys;
}

std::string_view rawValue(Key key) { return row(key).name; }

void setPreferredLanguages(PreferredLanguages reader) { preferredLanguages() = std::move(reader); }

L10nLanguage language() { return chosenLanguage(); }

void setLanguage(L10nLanguage language) { chosenLanguage() = language; }

L10nLanguage detect(const std::vector<std::string>& preferred) {
    return !preferred.empty() && identifierBegins(preferred.front(), "ko") ? L10nLanguage::ko
                                                                           : L10nLanguage::en;
}

const SystemWords& systemWords() { return chosenWords(); }

void setSystemWords(SystemWords words) { chosenWords() = std::move(words); }

std::string t(Key key) { return std::string(text(key)); }

std::string t(Key key, const std::vector<std::string>& arguments) {
    constexpr std::string_view placeholder = "%@";
    std::string filled;
    std::string_view rest = text(key);
    for (const std::string& argument : arguments) {
        const std::size_t at = rest.find(placeholder);
        if (at == std::string_view::npos) break;
        filled.append(rest.substr(0, at)).append(argument);
        rest.remove_prefix(at + placeholder.size());
    }
    return filled.append(rest);
}

} // namespace hopsel::l10n
