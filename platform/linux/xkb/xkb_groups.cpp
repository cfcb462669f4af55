#include "platform/linux/xkb/xkb_groups.h"

#include <algorithm>
#include <set>
#include <utility>

namespace hopsel::xkb_groups {

namespace {

constexpr std::size_t maxNameLength = 64;
constexpr std::size_t layoutsField = 2;
constexpr std::size_t variantsField = 3;

/// At most `limit` pieces; what follows the last is dropped.
std::vector<std::string_view> split(std::string_view text, char separator, std::size_t limit) {
    std::vector<std::string_view> pieces;
    while (pieces.size() < limit) {
        const std::size_t end = text.find(separator);
        pieces.push_back(text.substr(0, end));
        if (end == std::string_view::npos) break;
        text.remove_prefix(end + 1);
    }
    return pieces;
}

std::string cleanName(std::string_view name) {
    std::string clean(name.substr(0, maxNameLength));
    std::replace_if(clean.begin(), clean.end(), [](char c) { return c <= ' ' || c > '~'; }, '?');
    return clean;
}

/// "us(intl)" is understood by the layout compiler as well as layout "us" with variant "intl".
void splitEmbeddedVariant(XkbLayout& layout) {
    const std::size_t open = layout.layout.find('(');
    if (!layout.variant.empty() || open == 0 || open == std::string::npos || layout.layout.back() != ')')
        return;
    layout.variant = layout.layout.substr(open + 1, layout.layout.size() - open - 2);
    layout.layout.resize(open);
}

std::string idOf(const XkbGroup& group) {
    if (group.layout.layout.empty()) {
        return "xkb:" +
               (group.serverName.empty() ? "group" + std::to_string(group.index + 1) : group.serverName);
    }
    if (group.layout.variant.empty()) return "xkb:" + group.layout.layout;
    return "xkb:" + group.layout.layout + "+" + group.layout.variant;
}

std::string uniqueID(const std::string& id, std::set<std::string>& taken) {
    std::string unique = id;
    for (int number = 2; !taken.insert(unique).second; ++number) unique = id + "#" + std::to_string(number);
    return unique;
}

} // namespace

std::vector<XkbLayout> parseRulesNames(std::string_view property) {
    const auto fields = split(property, '\0', variantsField + 1);
    if (fields.size() <= layoutsField) return {};
    const auto names = split(fields[layoutsField], ',', maxLayouts);
    const auto variants = split(fields.size() > variantsField ? fields[variantsField] : "", ',', maxLayouts);

    std::vector<XkbLayout> layouts;
    for (std::size_t i = 0; i < names.size(); ++i) {
        XkbLayout layout{cleanName(names[i]), i < variants.size() ? cleanName(variants[i]) : ""};
        splitEmbeddedVariant(layout);
        layouts.push_back(std::move(layout));
    }
    return layouts;
}

std::vector<XkbLayout> BelievedLayouts::take(std::vector<XkbLayout> told,
                                             const std::vector<std::string>& groupNames) {
    const auto hasName = [](const XkbLayout& layout) { return !layout.layout.empty(); };
    const auto named = static_cast<std::size_t>(std::count_if(told.begin(), told.end(), hasName));
    if (named >= groupNames.size()) {
        layouts_ = std::move(told);
        groupNames_ = groupNames;
        return layouts_;
    }
    return groupNames == groupNames_ ? layouts_ : told;
}

std::vector<XkbGroup> list(const std::vector<XkbLayout>& layouts, int groupCount,
                           const std::vector<std::string>& groupNames) {
    std::vector<XkbGroup> groups;
    std::set<std::string> taken;
    const int count = std::max(static_cast<int>(layouts.size()), groupCount);
    for (int index = 0; index < count; ++index) {
        const auto position = static_cast<std::size_t>(index);
        XkbGroup group;
        group.index = index;
        group.isLockable = index < groupCount;
        if (position < layouts.size()) group.layout = layouts[position];
        if (group.layout.layout.empty()) {
            if (!group.isLockable) continue;
            if (position < groupNames.size()) group.serverName = groupNames[position];
        }
        group.id = uniqueID(idOf(group), taken);
        groups.push_back(std::move(group));
    }
    return groups;
}

} // namespace hopsel::xkb_groups
