// How application identifiers are compared: by their beginning, without regard to the case of ASCII letters,
// whatever the user's locale. Pure.
#pragma once

#include <algorithm>
#include <string_view>

namespace hopsel {

constexpr char asciiLowered(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

constexpr bool identifierBegins(std::string_view identifier, std::string_view prefix) {
    return identifier.size() >= prefix.size() &&
           std::equal(prefix.begin(), prefix.end(), identifier.begin(), [](char expected, char actual) {
               return asciiLowered(expected) == asciiLowered(actual);
           });
}

} // namespace hopsel
