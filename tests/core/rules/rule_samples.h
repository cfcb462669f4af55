// Rules for tests to start from, and the document text of one of them with places to break.
#pragma once

#include "core/rules/rule.h"

#include <string>

namespace hopsel::samples {

inline Action toggle(std::string a = "abc", std::string b = "dvorak") {
    return action::Toggle{{std::move(a), "ABC"}, {std::move(b), "Dvorak"}};
}

inline Rule tapRule(std::string id, ModifierKey key = ModifierKey::rightCommand, Action action = toggle()) {
    return {std::move(id), true, trigger::ModifierTap{key}, std::move(action)};
}

inline Rule shortcutRule(std::string id, ShortcutKey key = {49, {ModifierKey::leftShift}}) {
    return {std::move(id), true, trigger::Shortcut{key}, toggle()};
}

/// One rule of each trigger, without blanks.
inline const std::string twoRules =
    R"({"schemaVersion":2,"rules":[{"id":"tap","enabled":true,"trigger":{"type":"modifier_tap","key":"rightCommand"},)"
    R"("action":{"type":"toggle_input_source","sourceA":{"sourceId":"abc","displayName":"ABC"},)"
    R"("sourceB":{"sourceId":"dvorak","displayName":"Dvorak"}}},)"
    R"({"id":"keys","enabled":true,"trigger":{"type":"shortcut","keyCode":49,"modifiers":["leftShift"]},)"
    R"("action":{"type":"toggle_input_source","sourceA":{"sourceId":"abc","displayName":"ABC"},)"
    R"("sourceB":{"sourceId":"dvorak","displayName":"Dvorak"}}}]})";

/// `twoRules` with the first occurrence of `from` replaced.
inline std::string twoRulesWith(const std::string& from, const std::string& to) {
    std::string text = twoRules;
    return text.replace(text.find(from), from.size(), to);
}

} // namespace hopsel::samples
