// What a user does with the list of rules over time: many rules, a slip undone, another key, files.
#include "ui/settings/rules/rule_row.h"
#include "ui/settings/settings_rig.h"

#include <QFileDialog>
#include <QLayout>
#include <QLineEdit>
#include <QScrollArea>
#include <QScrollBar>
#include <fstream>
#include <sstream>

namespace hopsel::test {
namespace {

using fakes::english;
using fakes::korean;
using l10n::Key;

class RulesLife : public testing::Test, protected SettingsRig {
  protected:
    RulesLife() { launch(); }

    void add(std::uint16_t count) {
        for (std::uint16_t i = 0; i < count; ++i)
            addRule(trigger::Shortcut{{i, {ModifierKey::leftControl, ModifierKey::leftOption}}});
    }
    /// The rule's own button, wherever its row stands.
    QAbstractButton* button(Key what, const Trigger& trigger) const {
        return find(QString::fromStdString(l10n::t(what) + ", " + l10n::triggerName(trigger)));
    }
    const QScrollArea& pane() const { return *visible<QScrollArea>().front(); }
    std::string stored() const { return (std::ostringstream() << std::ifstream(file).rdbuf()).str(); }
    /// In the desktop's dialog, which is our own here.
    void answer(const std::filesystem::path& place) const {
        auto* dialog = window()->findChild<QFileDialog*>();
        ASSERT_NE(dialog, nullptr);
        Q_EMIT dialog->fileSelected(QString::fromStdString(place.string()));
        dialog->close();
        settle();
    }
};

TEST_F(RulesLife, ThePaneIsAsHighAsItsRowsAtAnyWidth) {
    int rules = 0;
    for (const int count : {1, 5, 40}) {
        model->addRule(rightCommand, korean, {"gone", "Away", "", {}, true});
        for (; rules < count; ++rules)
            addRule(trigger::Shortcut{
                {static_cast<std::uint16_t>(rules), {ModifierKey::leftControl, ModifierKey::leftOption}}});
        open(SettingsPane::rules);
        for (const int width : {620, 780, 1200}) {
            window()->resize(width, 520);
            settle();
            const auto rows = visible<RuleRow>();
            ASSERT_EQ(rows.size(), static_cast<std::size_t>(count) + 1);
            for (const RuleRow* row : rows) EXPECT_EQ(row->height(), row->heightForWidth(row->width()));
            const QWidget* page = pane().widget();
            int bottom = 0;
            for (const QLineEdit* field : visible<QLineEdit>())
                bottom = field->mapTo(page, QPoint(0, field->height())).y();
            const int needed = bottom + page->layout()->contentsMargins().bottom();
            EXPECT_EQ(page->height(), std::max(needed, pane().viewport()->height()))
                << count << " rules, " << width << " wide";
        }
    }
}

TEST_F(RulesLife, ADeletedRuleComesBackToItsPlaceUnlessItsKeyIsUsedAgain) {
    add(3);
    model->setRuleEnabled(model->rules()[1].id, false);
    const std::vector<Rule> before = model->rules();
    open(SettingsPane::rules);
    EXPECT_EQ(find(Key::rulesUndo), nullptr);
    click(button(Key::ruleDelete, before[1].trigger));
    EXPECT_EQ(model->rules().size(), 2U);
    click(Key::rulesUndo);
    EXPECT_EQ(model->rules(), before);
    EXPECT_EQ(find(Key::rulesUndo), nullptr);

    click(button(Key::ruleDelete, before[0].trigger));
    activate();
    find(Key::rulesAdd)->setFocus();
    type(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(model->rules(), before);
    click(button(Key::ruleDelete, before[2].trigger));
    addRule(before[2].trigger);
    settle();
    EXPECT_EQ(find(Key::rulesUndo), nullptr) << "another rule has the key";
    click(button(Key::ruleDelete, before[0].trigger));
    open(SettingsPane::general);
    open(SettingsPane::rules);
    EXPECT_EQ(find(Key::rulesUndo), nullptr) << "forgotten with the pane";
}

TEST_F(RulesLife, TheRowThatFiredLightsUpForAMoment) {
    add(2);
    open(SettingsPane::rules);
    window()->resize(1200, 520);
    settle();
    RuleRow* const row = visible<RuleRow>()[1];
    RuleRow* const other = visible<RuleRow>()[0];
    const auto look = [](RuleRow* widget) { return widget->grab().toImage(); };
    const QImage dark = look(row);
    const QImage otherDark = look(other);
    emitEvent(engine_event::Switched{model->rules()[1].id, {}, "abc", true, 1});
    QCoreApplication::processEvents();
    const QImage good = look(row);
    EXPECT_NE(good, dark);
    EXPECT_EQ(look(other), otherDark);
    EXPECT_TRUE(runLoopUntil([&] { return look(row) == dark; }));
    emitEvent(engine_event::SwitchFailed{model->rules()[1].id, "abc", select_result::NotFound{}});
    QCoreApplication::processEvents();
    EXPECT_TRUE(look(row) != dark && look(row) != good) << "it arrived, but nothing came of it";
}

TEST_F(RulesLife, AnotherKeyIsGivenWhereTheKeyStands) {
    add(2);
    const std::string id = model->rules()[0].id;
    open(SettingsPane::rules);
    activate();
    click(find("Left ⌃ + Left ⌥ + A, Change"));
    click(find(Key::addRuleKey));
    keys->press(49, {ModifierKey::leftControl});
    settle();
    click(find("Change"));
    EXPECT_EQ(model->rules()[0].id, id);
    EXPECT_EQ(model->rules()[0].trigger, Trigger(trigger::Shortcut{{49, {ModifierKey::leftControl}}}));
    EXPECT_EQ(window()->focusWidget(), find("Left ⌃ + Space, Change")) << "where the user was";
}

TEST_F(RulesLife, RulesGoToAFileAndComeBackWithoutTouchingWhatIsHere) {
    add(3);
    open(SettingsPane::rules);
    click(Key::rulesExport);
    answer(folder.path() / "out.json");
    EXPECT_TRUE(says("Exported to "));
    const std::vector<Rule> all = model->rules();
    model->removeRule(all[0].id);
    model->removeRule(all[1].id);
    model->addRule(all[1].trigger, english, korean); // the other way round
    click(Key::rulesImport);
    answer(folder.path() / "out.json");
    EXPECT_TRUE(says("Rules imported: 1. Already here: 1. Left out, because the key is in use here: "));
    ASSERT_EQ(model->rules().size(), 3U);
    EXPECT_EQ(model->rules()[2], all[0]);

    const std::string before = stored();
    folder.write("bad.json", "{}");
    click(Key::rulesImport);
    answer(folder.path() / "bad.json");
    EXPECT_TRUE(says(Key::importNotRules));
    folder.write("bad.json", R"({"schemaVersion":9})");
    click(Key::rulesImport);
    answer(folder.path() / "bad.json");
    EXPECT_TRUE(says(Key::importNewer));
    click(Key::rulesImport);
    answer(folder.path() / "nowhere.json");
    EXPECT_TRUE(says("This could not be imported: "));
    EXPECT_EQ(stored(), before);
}

TEST_F(RulesLife, ABrokenSettingsFileHasThreeWaysOut) {
    add(2);
    const std::vector<Rule> good = model->rules();
    for (const bool usesCopy : {true, false}) {
        folder.write("config.json", "broken" + std::to_string(usesCopy));
        controller.reset();
        launch();
        open(SettingsPane::rules);
        EXPECT_TRUE(says(Key::storeCorrupt) && !find(Key::rulesAdd)->isEnabled());
        click(Key::settingsFileShow);
        EXPECT_EQ(calls.back(), "reveal config.json");
        open(SettingsPane::general); // there as well
        click(usesCopy ? Key::settingsFileUseCopy : Key::settingsFileAfresh);
        EXPECT_EQ(model->rules(), usesCopy ? good : std::vector<Rule>());
        EXPECT_FALSE(says(Key::storeCorrupt) || model->storeProblem());
        std::filesystem::remove(file.string() + ".corrupt-1700000000");
        click(Key::menuEngineToggle);
        EXPECT_NE(usesCopy, model->engineEnabled());
    }
}

} // namespace
} // namespace hopsel::test
