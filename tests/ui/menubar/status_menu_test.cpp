#include "support/qt_waiting.h"
#include "ui/l10n/l10n.h"
#include "ui/menubar/menu_builder.h"
#include "ui/menubar/status_menu.h"

#include <QAccessible>
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

TEST_F(StatusMenuTest, TheCheckMarkFollowsTheStateAndNotTheClick) {
    item(0).trigger();
    item(14).trigger();
    EXPECT_THAT(clicked, ElementsAre(MenuAction::toggleEngine, MenuAction::quit));
    EXPECT_TRUE(test::runLoopUntil([&] { return item(0).isChecked(); })) << "nothing came of the click";
}

} // namespace
} // namespace hopsel
