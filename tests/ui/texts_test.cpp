// Texts, key names, the menu and the status item, without a toolkit.
#include "ui/l10n/l10n.h"
#include "ui/menubar/menu_builder.h"
#include "ui/menubar/source_label.h"
#include "ui/menubar/status_item_presenter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace hopsel {
namespace {

using testing::ElementsAre;

class Texts : public testing::Test {
  protected:
    ~Texts() override { l10n::setLanguage(L10nLanguage::en); }
};

TEST_F(Texts, areThereInBothLanguagesWithTheSameArguments) {
    const auto arguments = [](L10nLanguage language, l10n::Key key) {
        l10n::setLanguage(language);
        const std::string text = l10n::t(key);
        EXPECT_FALSE(text.empty()) << l10n::rawValue(key);
        int count = 0;
        for (auto at = text.find("%@"); at != std::string::npos; at = text.find("%@", at + 2)) ++count;
        return count;
    };
    for (const l10n::Key key : l10n::allKeys())
        EXPECT_EQ(arguments(L10nLanguage::ko, key), arguments(L10nLanguage::en, key)) << l10n::rawValue(key);
}

TEST_F(Texts, areKoreanWhereKoreanIsWantedFirst) {
    for (const char* first : {"ko", "KO", "ko-KR", "ko_Kore", "korean"})
        EXPECT_EQ(l10n::detect({first, "en"}), L10nLanguage::ko) << first;
    for (const char* first : {"en-KR", "ja", "", "k", "C"})
        EXPECT_EQ(l10n::detect({first, "ko"}), L10nLanguage::en) << first;
    EXPECT_EQ(l10n::detect({}), L10nLanguage::en);
}

TEST_F(Texts, takeTheirArguments) {
    using l10n::Key;
    EXPECT_EQ(l10n::t(Key::onbStepOf, {"2", "4"}), "2 / 4");
    EXPECT_EQ(l10n::t(Key::diagProbeOther, {"%@ 100%"}),
              "A different key arrived instead of %@ 100%. Another app may be remapping it.");
    EXPECT_EQ(l10n::t(Key::aboutVersion, {}), "Version %@");
    EXPECT_EQ(l10n::t(Key::menuQuit, {"ignored"}), "Quit Hopsel");
}

TEST_F(Texts, nameKeys) {
    const ShortcutKey many{40,
                           {ModifierKey::rightCommand, ModifierKey::leftShift, ModifierKey::rightShift,
                            ModifierKey::leftControl, ModifierKey::rightOption}};
    EXPECT_EQ(l10n::shortcutName(many), "Left ⌃ + Right ⌥ + Left ⇧ + Right ⇧ + Right ⌘ + K");
    EXPECT_EQ(l10n::triggerName(trigger::Shortcut{{96, {}}}), "F5");
    l10n::setLanguage(L10nLanguage::ko);
    EXPECT_EQ(l10n::triggerName(trigger::ModifierTap{ModifierKey::rightCommand}), "오른쪽 ⌘");
    EXPECT_EQ(l10n::shortcutName({49, {ModifierKey::leftShift}}), "왼쪽 ⇧ + Space");

    // The rows of an ANSI keyboard, and the keys around it.
    const auto labels = [](const std::vector<std::uint16_t>& codes) {
        std::string all;
        for (const std::uint16_t code : codes) all += l10n::keyLabel(code) + " ";
        return all;
    };
    EXPECT_EQ(labels({50, 18, 19, 20, 21, 23, 22, 26, 28, 25, 29, 27, 24, 51}),
              "` 1 2 3 4 5 6 7 8 9 0 - = Delete ");
    EXPECT_EQ(labels({53,  122, 120, 99,  118, 96,  97, 98, 100, 101, 109,
                      103, 111, 105, 107, 113, 106, 64, 79, 80,  90}),
              "Esc F1 F2 F3 F4 F5 F6 F7 F8 F9 F10 F11 F12 F13 F14 F15 F16 F17 F18 F19 F20 ");
    EXPECT_EQ(labels({114, 115, 116, 117, 119, 121, 123, 124, 125, 126, 102, 65535}),
              "Help Home Page Up Forward Delete End Page Down ← → ↓ ↑ Key 102 Key 65535 ");
}

/// One line an item, as a person would write the menu down.
std::vector<std::string> written(const MenuState& state) {
    std::vector<std::string> lines;
    for (const MenuItemSpec& item : menu_builder::items(state)) {
        if (const auto* toggle = std::get_if<menu_item::Toggle>(&item))
            lines.push_back((toggle->isOn ? "[x] " : "[ ] ") + toggle->title + " >" +
                            std::to_string(static_cast<int>(toggle->action)));
        else if (const auto* action = std::get_if<menu_item::Action>(&item))
            lines.push_back(action->title + " >" + std::to_string(static_cast<int>(action->action)));
        else if (const auto* header = std::get_if<menu_item::Header>(&item))
            lines.push_back("# " + header->text);
        else if (const auto* info = std::get_if<menu_item::Info>(&item))
            lines.push_back("  " + info->text);
        else if (const auto* status = std::get_if<menu_item::Status>(&item))
            lines.push_back("  " + status->text + " (" + std::to_string(static_cast<int>(status->level)) +
                            ")");
        else
            lines.emplace_back("--");
    }
    return lines;
}

TEST_F(Texts, makeTheMenuOfEveryState) {
    EXPECT_THAT(written({true, StatusLine::ok, "ABC", {"one", "two"}, false}),
                ElementsAre("[x] Input Switching >0", "--", "# Current input", "  ABC", "--",
                            "# Switch rules", "  one", "  two", "--", "# Status", "  ✓ Working (0)", "--",
                            "[ ] Launch at login >1", "Settings… >2", "Report a Bug… >3", "Quit Hopsel >6"));
    const std::pair<StatusLine, std::vector<std::string>> others[] = {
        {StatusLine::permissionMissing,
         {"  ⚠ Input Monitoring permission needed (2)", "Open System Settings… >4"}},
        {StatusLine::paused, {"  Paused (1)", "--"}},
        {StatusLine::starting, {"  Starting… (1)", "--"}},
        {StatusLine::tapDisabled, {"  ⚠ Key detection stopped (2)", "--"}},
        {StatusLine::accessibilityMissing,
         {"  ⚠ Shortcut rules need Accessibility access (2)", "Open Accessibility Settings… >5"}},
        {StatusLine::configProblem, {"  ⚠ Settings file problem (see Settings) (2)", "--"}},
    };
    for (const auto& [status, lines] : others) {
        const auto menu = written({true, status, "ABC", {"one"}, false});
        EXPECT_EQ(std::vector(menu.begin() + 9, menu.begin() + 11), lines);
    }
}

TEST(SourceLabel, isOfTheFirstLanguageElseOfTheName) {
    using Languages = std::vector<std::string>;
    const std::tuple<Languages, std::string, std::string> cases[] = {{{"ko"}, "ABC", "한"},
                                                                     {{"ja-JP", "en"}, "x", "あ"},
                                                                     {{"zh_Hant"}, "x", "中"},
                                                                     {{"EN"}, "ABC", "A"},
                                                                     {{"fr", "ko"}, "French", "F"},
                                                                     {{}, "dvorak", "D"},
                                                                     {{}, "", "?"},
                                                                     {{""}, "éclair", "É"},
                                                                     {{"kok"}, "कोंकणी", "कों"},
                                                                     {{"de"}, "e\u0301t", "E\u0301"}};
    for (const auto& [languages, name, label] : cases) EXPECT_EQ(source_label::label(languages, name), label);
}

TEST(StatusItemPresenter, showsALabelOnlyWhenAllIsWell) {
    using status_item_presenter::appearance;
    const StatusBadge pair{"한", "A", true};
    EXPECT_EQ(appearance(StatusLine::ok, true, "B", pair), (StatusItemAppearance{"keyboard", pair}));
    EXPECT_EQ(appearance(StatusLine::ok, true, "B", std::nullopt),
              (StatusItemAppearance{"keyboard", StatusBadge{"B", std::nullopt, true}}));
    const StatusItemAppearance plain{"keyboard", std::nullopt};
    EXPECT_EQ(appearance(StatusLine::ok, false, "B", pair), plain);
    EXPECT_EQ(appearance(StatusLine::ok, true, "", pair), plain);
    EXPECT_EQ(appearance(StatusLine::ok, true, std::nullopt, pair), plain);
    EXPECT_EQ(appearance(StatusLine::starting, true, "B", pair), plain);
    EXPECT_EQ(appearance(StatusLine::paused, true, "B", pair).symbolName, "pause.circle");
    for (const StatusLine problem : {StatusLine::permissionMissing, StatusLine::tapDisabled,
                                     StatusLine::accessibilityMissing, StatusLine::configProblem})
        EXPECT_EQ(appearance(problem, true, "B", pair),
                  (StatusItemAppearance{"exclamationmark.triangle", std::nullopt}));
}

} // namespace
} // namespace hopsel
