#include "support/qt_waiting.h"
#include "ui/l10n/l10n.h"
#include "ui/menubar/menu_builder.h"
#include "ui/menubar/status_menu.h"

#include <QAccessible>
#include <QTest>
#include <gmock/gmock.h>

namespace hopsel {
namespace {

using testing::ElementsAre;

class StatusMenuTest : public testing::Test {
  protected:
    void SetUp() override { open(); }
    void open() { Q_EMIT menu.aboutToShow(); }
    QAction& item(int index) const { return *menu.actions().at(index); }

    MenuState state{true, StatusLine::ok, "ABC", {"Right ⌘  Korean ⇄ ABC"}, false};
    std::vector<MenuAction> clicked;
    StatusMenu menu{[this] {
                        l10n::setLanguage(L10nLanguage::en);
                        return menu_builder::items(state);
                    },
                    [this](MenuAction action) { clicked.push_back(action); }};
};

TEST_F(StatusMenuTest, ShowsTheDescriptionFromTopToBottom) {
    // "[x]" is checked, "( )" cannot be clicked.
    std::vector<std::string> lines;
    for (const QAction* action : menu.actions()) {
        std::string line = action->isSeparator() ? "-" : action->text().toStdString();
        if (action->isCheckable()) line.insert(0, action->isChecked() ? "[x] " : "[ ] ");
        lines.push_back(action->isEnabled() || action->isSeparator() ? line : "(" + line + ")");
    }
    EXPECT_THAT(lines,
                ElementsAre("[x] Input Switching", "-", "(Current input)", "(ABC)", "-", "(Switch rules)",
                            "(Right ⌘  Korean ⇄ ABC)", "-", "(Status)", "(✓ Working)", "-",
                            "[ ] Launch at login", "Settings…", "Report a Bug…", "Quit Hopsel"));
}

TEST_F(StatusMenuTest, ReadsTheStateAgainWheneverItOpens) {
    const QAction* toggle = &item(0);
    state.engineEnabled = false;
    state.currentInputName = "A&B\tC\nD";
    state.ruleLines = {std::string(5000, 'x')};
    open();
    EXPECT_EQ(&item(0), toggle) << "panels know it by its identifier";
    EXPECT_FALSE(toggle->isChecked());
    EXPECT_LT(menu.sizeHint().width(), 2000);
    const QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&menu);
    EXPECT_EQ(accessible->child(3)->text(QAccessible::Name), "A&B C D");

    state.status = StatusLine::permissionMissing;
    open();
    EXPECT_EQ(menu.actions().size(), 16);
    EXPECT_TRUE(item(10).isEnabled()) << "the way out, below the status";
}

TEST_F(StatusMenuTest, MarksTheStatusLineWithADotThatIsNotPaleThoughItCannotBeClicked) {
    const auto dot = [this](StatusLine status) {
        state.status = status;
        open();
        return item(9).icon().pixmap(16, QIcon::Disabled).toImage().pixelColor(8, 8);
    };
    const QColor good = dot(StatusLine::ok), bad = dot(StatusLine::tapDisabled);
    EXPECT_GT(good.green(), good.red() + 80);
    EXPECT_GT(bad.red(), bad.green() + 80);
    EXPECT_LT(dot(StatusLine::paused).saturation(), 40);
}

TEST_F(StatusMenuTest, AClickTellsItsActionAndTheCheckMarkFollowsTheState) {
    menu.popup({0, 0});
    QTest::keyClick(&menu, Qt::Key_Down);
    QTest::keyClick(&menu, Qt::Key_Return);
    QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.actionGeometry(&item(3)).center());
    item(14).trigger();
    EXPECT_THAT(clicked, ElementsAre(MenuAction::toggleEngine, MenuAction::quit));
    EXPECT_TRUE(test::runLoopUntil([&] { return item(0).isChecked(); })) << "nothing came of the click";
}

} // namespace
} // namespace hopsel
