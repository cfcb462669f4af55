// What the menu and the status line say, as plain values that no toolkit knows of.
#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace hopsel {

enum class MenuAction {
    toggleEngine,
    toggleLaunchAtLogin,
    openSettings,
    openBugReport,
    openPrivacySettings,
    openAccessibilitySettings,
    quit,
};

/// The one-line state of the whole program.
enum class StatusLine {
    ok,
    paused, ///< the user switched it off
    starting,
    permissionMissing,    ///< cannot listen
    tapDisabled,          ///< listened, and was cut off
    accessibilityMissing, ///< listens, but cannot filter combinations
    configProblem,        ///< the settings file cannot be used
    noRules,              ///< listens, but no rule is on
    nothingToSwitch,      ///< no rule that is on can switch now: its sources are not there, or fixed
};

enum class MenuStatusLevel { ok, neutral, problem };

namespace menu_item {
/// An input source to switch to.
struct Source {
    std::string id;
    std::string name;
    bool isCurrent = false;
    friend bool operator==(const Source&, const Source&) = default;
};
} // namespace menu_item

struct MenuState {
    bool engineEnabled = false;
    StatusLine status = StatusLine::starting;
    std::optional<std::string> currentInputName; ///< absent when unknown
    std::vector<std::string> ruleLines;          ///< in the stored order, disabled rules too
    bool launchAtLogin = false;
    /// Those that another program holds; empty where it is not known which.
    std::vector<std::string> takenCombinations = {};
    std::vector<menu_item::Source> sources = {}; ///< to choose from; empty where there is no choice
    friend bool operator==(const MenuState&, const MenuState&) = default;
};

namespace menu_item {
struct Toggle {
    MenuAction action;
    std::string title;
    bool isOn = false;
    friend bool operator==(const Toggle&, const Toggle&) = default;
};
struct Action {
    MenuAction action;
    std::string title;
    friend bool operator==(const Action&, const Action&) = default;
};
struct Header {
    std::string text;
    friend bool operator==(const Header&, const Header&) = default;
};
struct Info {
    std::string text;
    friend bool operator==(const Info&, const Info&) = default;
};
struct Status {
    std::string text;
    MenuStatusLevel level;
    friend bool operator==(const Status&, const Status&) = default;
};
/// A menu of its own below this line; every source in it can be clicked.
struct Sources {
    std::string title;
    std::vector<Source> choices;
    friend bool operator==(const Sources&, const Sources&) = default;
};
struct Separator {
    friend bool operator==(const Separator&, const Separator&) = default;
};
} // namespace menu_item

/// Only toggles, actions and sources can be clicked.
using MenuItemSpec = std::variant<menu_item::Toggle, menu_item::Action, menu_item::Header, menu_item::Info,
                                  menu_item::Status, menu_item::Sources, menu_item::Separator>;

} // namespace hopsel
