#include "model/source_suggester.h"

#include <algorithm>

namespace hopsel::source_suggester {

namespace {

bool isEnglish(const InputSourceInfo& source) {
    return !source.languages.empty() && source.languages.front().rfind("en", 0) == 0;
}

/// The identifier of the first selectable source that the condition holds for.
template <class Condition>
std::optional<std::string> firstWhere(const std::vector<InputSourceInfo>& sources, Condition holds) {
    const auto found = std::find_if(sources.begin(), sources.end(), [&](const InputSourceInfo& source) {
        return source.isSelectCapable && holds(source);
    });
    if (found == sources.end()) return std::nullopt;
    return found->id;
}

} // namespace

Suggestion suggest(const std::vector<InputSourceInfo>& sources) {
    const auto other = firstWhere(sources, [](const InputSourceInfo& source) { return !isEnglish(source); });
    const auto english = firstWhere(sources, isEnglish);
    if (other && english) return {other, english};
    const auto first = firstWhere(sources, [](const InputSourceInfo&) { return true; });
    return {first, firstWhere(sources, [&](const InputSourceInfo& source) { return source.id != *first; })};
}

} // namespace hopsel::source_suggester
