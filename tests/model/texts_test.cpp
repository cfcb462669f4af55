// Texts, key names, the menu and the status item, without a toolkit.
#include "model/menu/menu_builder.h"
#include "model/menu/source_label.h"
#include "model/menu/status_item_presenter.h"
#include "model/texts/l10n.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace hopsel {
namespace {

class Texts : public testing::Test {
  protected:
    ~Texts() override { l10n::setLanguage(L10nLanguage::en); }
};

TEST_F(Texts, AreThereInBothLanguagesWithTheSameArguments) {
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

TEST_F(Texts, AreKoreanWhereKoreanIsWantedFirst) {
    for (const char* first : {"ko", "KO", "ko-KR", "ko_Kore", "korean"})
        EXPECT_EQ(l10n::detect({first, "en"}), L10nLanguage::ko) << first;
    for (const char* first : {"en-KR", "ja", "", "k", "C"})
        EXPECT_EQ(l10n::detect({first, "ko"}), L10nLanguage::en) << first;
    EXPECT_EQ(l10n::detect({}), L10nLanguage::en);
}

TEST_F(Texts, NameKeys) {
    const ShortcutKey many{40,
                           {ModifierKey::rightCommand, ModifierKey::leftShift, ModifierKey::rightShift,
                            ModifierKey::leftControl, ModifierKey::rightOption}};
    EXPECT_EQ(l10n::shortcutName(many), "Left ⌃ + Right ⌥ + Left ⇧ + Right ⇧ + Right ⌘ + K");
    EXPECT_EQ(l10n::triggerName(trigger::Shortcut{{96, {}}}), "F5");
    l10n::setLanguage(L10nLanguage::ko);
    EXPECT_EQ(l10n::triggerName(trigger::ModifierTap{ModifierKey::rightCommand}), "오른쪽 ⌘");
    EXPECT_EQ(l10n::shortcutName({49, {ModifierKey::leftShift}}), "왼쪽 ⇧ + Space");

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

TEST_F(Texts, OfferTheWayOutOfWhatIsMissing) {
    const std::pair<StatusLine, menu_item::Action> cases[] = {
        {StatusLine::permissionMissing, {MenuAction::openPrivacySettings, "Open System Settings…"}},
        {StatusLine::tapsUnheard, {MenuAction::openPrivacySettings, "Open System Settings…"}},
        {StatusLine::accessibilityMissing,
         {MenuAction::openAccessibilitySettings, "Open Accessibility Settings…"}}};
    for (const auto& [status, wayOut] : cases)
        EXPECT_THAT(menu_builder::items({true, status, "ABC", {}, false}),
                    testing::Contains(MenuItemSpec(wayOut)));
}

TEST(SourceLabel, IsOfTheFirstLanguageElseOfTheName) {
    using Languages = std::vector<std::string>;
    const std::tuple<Languages, std::string, std::string> cases[] = {{{"ko"}, "ABC", "한"},
                                                                     {{"ja-JP", "en"}, "x", "あ"},
                                                                     {{"zh_Hant"}, "x", "中"},
                                                                     {{"fr", "ko"}, "French", "F"},
                                                                     {{}, "", "?"},
                                                                     {{""}, "éclair", "É"},
                                                                     {{"kok"}, "कोंकणी", "कों"},
                                                                     {{"de"}, "e\u0301t", "E\u0301"}};
    for (const auto& [languages, name, label] : cases) EXPECT_EQ(source_label::label(languages, name), label);
}

TEST(SourceLabel, TellsTwoOfOneLanguageApartByTheirNames) {
    using Pair = std::pair<std::string, std::string>;
    EXPECT_EQ(source_label::toldApart("A", "English (US)", "English (Dvorak)"), Pair("U", "D"));
    EXPECT_EQ(source_label::toldApart("한", "2-Set Korean", "390 Sebulshik"), Pair("2", "3"));
    EXPECT_EQ(source_label::toldApart("A", "English", "English (dvorak)"), Pair("A", "D"));
    EXPECT_EQ(source_label::toldApart("é", "é", "è"), Pair("É", "È"));
    EXPECT_EQ(source_label::toldApart("?", "", ""), Pair("?", "?"));
}

TEST(StatusItemPresenter, ShowsALabelOnlyWhenAllIsWellAndWarnsElse) {
    using status_item_presenter::appearance;
    const StatusBadge pair{"한", "A", true};
    EXPECT_EQ(appearance(StatusLine::ok, true, "B", pair), (StatusItemAppearance{"keyboard", pair}));
    const StatusItemAppearance plain{"keyboard", std::nullopt};
    EXPECT_EQ(appearance(StatusLine::ok, false, "B", pair), plain);
    EXPECT_EQ(appearance(StatusLine::ok, true, std::nullopt, pair), plain);
    EXPECT_EQ(appearance(StatusLine::starting, true, "B", pair), plain);
    EXPECT_EQ(appearance(StatusLine::paused, true, "B", pair).symbolName, "pause.circle");
    for (const StatusLine problem :
         {StatusLine::permissionMissing, StatusLine::tapDisabled, StatusLine::accessibilityMissing,
          StatusLine::tapsUnheard, StatusLine::configProblem, StatusLine::nothingToSwitch}) {
        EXPECT_EQ(appearance(problem, true, "B", pair),
                  (StatusItemAppearance{"exclamationmark.triangle", std::nullopt}));
        EXPECT_THAT(menu_builder::statusTitle(problem), testing::StartsWith("⚠ "));
    }
}

} // namespace
} // namespace hopsel
