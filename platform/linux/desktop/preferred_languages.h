// The user's languages, most wanted first, from the environment as gettext reads it. Stateless.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace hopsel {

/// Like getenv: the variable's value, or null.
using EnvironmentReader = std::function<const char*(const char* name)>;

/// Identifiers such as "ko_KR" and "en", without encoding and modifier. The languages of LANGUAGE, then that
/// of the locale; nothing in the untranslated locale ("C"), where LANGUAGE does not count.
std::vector<std::string> preferredLanguages(const EnvironmentReader& environment);
std::vector<std::string> preferredLanguages();

} // namespace hopsel
