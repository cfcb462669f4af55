#include "model/menu/menu_builder.h"

#include "model/texts/combination_texts.h"
#include "model/texts/l10n.h"

namespace hopsel::menu_builder {

namespace {

using l10n::Key;
using l10n::t;

/// The way out of a problem, where the menu has one.
std::optional<MenuItemSpec> remedy(StatusLine status) {
    switch (status) {
    case StatusLine::permissionMissing:
    case StatusLine::tapsUnheard:
        return menu_item::Action{MenuAction::openPrivacySettings, t(Key::actionOpenPrivacy)};
    case StatusLine::accessibilityMissing:
        return menu_item::Action{MenuAction::openAccessibilitySettings, t(Key::actionOpenAccessibility)};
    default: return std::nullopt;
    }
}

} // namespace

std::vector<MenuItemSpec> items(const MenuState& state) {
    std::vector<MenuItemSpec> menu;
    menu.emplace_back(
        menu_item::Toggle{MenuAction::toggleEngine, t(Key::menuEngineToggle), state.engineEnabled});
    menu.emplace_back(menu_item::Separator{});
    menu.emplace_back(menu_item::Header{t(Key::menuCurrentInput)});
    menu.emplace_back(menu_item::Info{state.currentInputName.value_or("—")});
    menu.emplace_back(menu_item::Separator{});
    menu.emplace_back(menu_item::Header{t(Key::menuRulesHeader)});
    for (const std::string& line : state.ruleLines) menu.emplace_back(menu_item::Info{line});
    if (state.ruleLines.empty()) menu.emplace_back(menu_item::Info{t(Key::menuNoRules)});
    menu.emplace_back(menu_item::Separator{});
    menu.emplace_back(menu_item::Header{t(Key::menuStatusHeader)});
    menu.emplace_back(
        menu_item::Status{statusTitle(state.status, state.takenCombinations), statusLevel(state.status)});
    if (auto way = remedy(state.status)) menu.push_back(*std::move(way));
    menu.emplace_back(menu_item::Separator{});
    menu.emplace_back(
        menu_item::Toggle{MenuAction::toggleLaunchAtLogin, t(Key::menuLaunchAtLogin), state.launchAtLogin});
    menu.emplace_back(menu_item::Action{MenuAction::openSettings, t(Key::menuSettings)});
    menu.emplace_back(menu_item::Action{MenuAction::openBugReport, t(Key::menuBugReport)});
    menu.emplace_back(menu_item::Action{MenuAction::quit, t(Key::menuQuit)});
    return menu;
}

std::string statusTitle(StatusLine status, const std::vector<std::string>& taken) {
    if (status == StatusLine::accessibilityMissing && !taken.empty()) return l10n::takenText(taken);
    switch (status) {
    case StatusLine::ok: return t(Key::statusOK);
    case StatusLine::paused: return t(Key::statusPaused);
    case StatusLine::starting: return t(Key::statusStarting);
    case StatusLine::permissionMissing: return t(Key::statusPermission);
    case StatusLine::tapsUnheard: return t(Key::statusTapsUnheard);
    case StatusLine::tapDisabled: return t(Key::statusTapDisabled);
    case StatusLine::accessibilityMissing: return t(Key::statusAccessibility);
    case StatusLine::configProblem: return t(Key::statusConfigProblem);
    case StatusLine::noRules: return t(Key::statusNoRules);
    case StatusLine::nothingToSwitch: return t(Key::statusNothingToSwitch);
    }
    return {};
}

MenuStatusLevel statusLevel(StatusLine status) {
    switch (status) {
    case StatusLine::ok: return MenuStatusLevel::ok;
    case StatusLine::paused:
    case StatusLine::noRules:
    case StatusLine::starting: return MenuStatusLevel::neutral;
    default: return MenuStatusLevel::problem;
    }
}

} // namespace hopsel::menu_builder
