// The languages the user wants programs to speak, as the desktop tells every program: in the environment.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace hopsel {

/// The value of a variable; empty when it is not set.
using EnvironmentReader = std::function<std::string(const char* name)>;

/// Identifiers such as "ko_KR", the most wanted first, in gettext's order: LANGUAGE before LC_ALL,
/// LC_MESSAGES and LANG, but only if these do not ask for the C locale.
std::vector<std::string> preferredLanguages(const EnvironmentReader& read);
std::vector<std::string> preferredLanguages();

} // namespace hopsel
