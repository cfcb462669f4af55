#include "ui/menubar/menu_description.h"

#include "core/base/overloaded.h"
#include "model/texts/l10n.h"

#include <optional>
#include <variant>

namespace hopsel::menu_description {

namespace {

using Kind = MenuLine::Kind;

QString keyOf(MenuAction action) { return QStringLiteral("action:%1").arg(static_cast<int>(action)); }

QString keyOf(const MenuSource& source) { return "source:" + QString::fromStdString(source.id); }

Kind kindOf(MenuAction action) {
    switch (action) {
    case MenuAction::openSettings:
    case MenuAction::openBugReport:
    case MenuAction::openPrivacySettings:
    case MenuAction::openAccessibilitySettings: return Kind::window;
    default: return Kind::action;
    }
}

Kind kindOf(MenuStatusLevel level) {
    switch (level) {
    case MenuStatusLevel::ok: return Kind::ok;
    case MenuStatusLevel::neutral: return Kind::neutral;
    case MenuStatusLevel::problem: return Kind::problem;
    }
    return Kind::neutral;
}

MenuLine lineOf(const MenuItemSpec& spec) {
    const auto text = [](const std::string& told) { return StatusMenu::plainText(told); };
    return std::visit(
        Overloaded{
            [&](const menu_item::Toggle& toggle) {
                return MenuLine{Kind::toggle, text(toggle.title), toggle.isOn, keyOf(toggle.action)};
            },
            [&](const menu_item::Action& action) {
                return MenuLine{kindOf(action.action), text(action.title), false, keyOf(action.action)};
            },
            [&](const menu_item::Header& header) { return MenuLine{Kind::header, text(header.text)}; },
            [&](const menu_item::Info& info) { return MenuLine{Kind::info, text(info.text)}; },
            [&](const menu_item::Status& status) {
                return MenuLine{kindOf(status.level), text(status.text)};
            },
            [&](const menu_item::Separator&) { return MenuLine{Kind::separator, {}}; },
        },
        spec);
}

std::optional<MenuAction> actionOf(const MenuItemSpec& spec) {
    if (const auto* toggle = std::get_if<menu_item::Toggle>(&spec)) return toggle->action;
    if (const auto* action = std::get_if<menu_item::Action>(&spec)) return action->action;
    return std::nullopt;
}

} // namespace

std::vector<MenuLine> lines(const StatusMenu& menu) {
    std::vector<MenuLine> lines;
    const std::size_t placeOfSources = StatusMenu::placeOfSources(menu.lines());
    for (std::size_t i = 0; i < menu.lines().size(); ++i) {
        lines.push_back(lineOf(menu.lines()[i]));
        if (i != placeOfSources || menu.sources().empty()) continue;
        lines.push_back({Kind::menu, QString::fromStdString(l10n::t(l10n::Key::menuSources))});
        for (const MenuSource& source : menu.sources())
            lines.push_back(
                {Kind::choice, StatusMenu::plainText(source.name), source.isCurrent, keyOf(source)});
    }
    return lines;
}

void click(StatusMenu& menu, const QString& key) {
    for (const MenuItemSpec& spec : menu.lines()) {
        const auto action = actionOf(spec);
        if (action && keyOf(*action) == key) return menu.perform(*action);
    }
    for (const MenuSource& source : menu.sources())
        if (keyOf(source) == key) return menu.choose(std::string(source.id));
}

} // namespace hopsel::menu_description
