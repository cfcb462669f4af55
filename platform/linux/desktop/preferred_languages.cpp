#include "platform/linux/desktop/preferred_languages.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace hopsel {

namespace {

std::string_view withoutEncoding(std::string_view locale) {
    return locale.substr(0, locale.find_first_of(".@"));
}

} // namespace

std::vector<std::string> preferredLanguages(const EnvironmentReader& environment) {
    const auto read = [&environment](const char* name) {
        const char* value = environment(name);
        return std::string_view(value != nullptr ? value : "");
    };
    std::string_view locale;
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"})
        if (locale.empty()) locale = read(name);
    locale = withoutEncoding(locale);
    if (locale.empty() || locale == "C" || locale == "POSIX") return {};

    std::vector<std::string> languages;
    std::string_view rest = read("LANGUAGE");
    while (!rest.empty()) {
        const std::string_view item = rest.substr(0, rest.find(':'));
        rest.remove_prefix(std::min(rest.size(), item.size() + 1));
        if (const auto language = withoutEncoding(item); !language.empty()) languages.emplace_back(language);
    }
    languages.emplace_back(locale);
    return languages;
}

std::vector<std::string> preferredLanguages() {
    return preferredLanguages([](const char* name) -> const char* { return std::getenv(name); });
}

} // namespace hopsel
