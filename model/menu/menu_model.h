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
    tapsUnheard,          ///< combinations work, and a rule that is on needs more
    configProblem,        ///< the settings file cannot be used
    noRules,              ///< listens, but no rule is on
    nothingToSwitch,      ///< no rule that is on can switch now: its sources are not there, or fixed
};

enum class MenuStatusLevel { ok, neutral, problem };

struct MenuState {
    bool engineEnabled = false;
    StatusLine status = StatusLine::starting;
    std::optional<std::string> currentInputName; ///< absent when unknown
    std::vector<std::string> ruleLines;          ///< in the stored order, disabled rules too
    bool launchAtLogin = false;
    /// Those that another program holds; empty where it is not known which.
    std::vector<std::string> takenCombinations = {};
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
struct Separator {
    friend bool operator==(const Separator&, const Separator&) = default;
};
} // namespace menu_item

/// Only toggles and actions can be clicked.
using MenuItemSpec = std::variant<menu_item::Toggle, menu_item::Action, menu_item::Header, menu_item::Info,
                                  menu_item::Status, menu_item::Separator>;

/// A source to choose in the menu below the current one.
struct MenuSource {
    std::string id;
    std::string name;
    bool isCurrent = false;
    friend bool operator==(const MenuSource&, const MenuSource&) = default;
};

} // namespace hopsel
