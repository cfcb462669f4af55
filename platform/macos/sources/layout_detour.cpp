#include "platform/macos/sources/layout_detour.h"

#include <algorithm>

namespace hopsel {

namespace {

bool isLayout(const InputSourceInfo& source) { return source.type == "TISTypeKeyboardLayout"; }

} // namespace

std::optional<std::string> layoutDetour(const std::string& target,
                                        const std::vector<InputSourceInfo>& sources,
                                        const std::optional<std::string>& current) {
    const auto found = std::find_if(sources.begin(), sources.end(),
                                    [&](const InputSourceInfo& source) { return source.id == target; });
    if (found == sources.end() || isLayout(*found)) return std::nullopt;
    std::optional<std::string> detour;
    for (const InputSourceInfo& source : sources) {
        if (!isLayout(source) || !source.isSelectCapable) continue;
        if (source.id != current) return source.id;
        detour = source.id;
    }
    return detour;
}

} // namespace hopsel
