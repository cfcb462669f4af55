#include "app/linux/session/preferred_languages.h"

#include <cstdlib>
#include <sstream>

namespace hopsel {

namespace {

/// "ko_KR.UTF-8@hanja" is "ko_KR".
std::string languageOf(const std::string& locale) { return locale.substr(0, locale.find_first_of(".@")); }

} // namespace

std::vector<std::string> preferredLanguages(const EnvironmentReader& read) {
    std::string locale;
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        locale = languageOf(read(name));
        if (!locale.empty()) break;
    }
    if (locale.empty() || locale == "C" || locale == "POSIX") return {};

    std::vector<std::string> languages;
    std::istringstream list(read("LANGUAGE"));
    for (std::string item; std::getline(list, item, ':');) {
        if (std::string language = languageOf(item); !language.empty())
            languages.push_back(std::move(language));
    }
    languages.push_back(locale);
    return languages;
}

std::vector<std::string> preferredLanguages() {
    return preferredLanguages([](const char* name) {
        const char* value = std::getenv(name);
        return std::string(value != nullptr ? value : "");
    });
}

} // namespace hopsel
