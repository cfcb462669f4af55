#include "panel_rig.h"
#include "platform/linux/tray/tray_item.h"
#include "ui/menubar/badge_renderer.h"

#include <QAccessible>
#include <QGuiApplication>
#include <QScreen>
#include <csignal>

namespace hopsel::test {
namespace {

class XEmbedPanel : public PanelRig {
  protected:
    const QSystemTrayIcon& icon() const { return dynamic_cast<const TrayItem&>(*controller->item()).icon(); }
    /// At the panel's end in the corner; on its way there it is partly outside the screen.
    bool waitUntilShown() {
        return runLoopUntil([this] {
            if (controller->item() == nullptr) return false;
            const QRect place = icon().geometry();
            return place.width() >= 16 && place.right() > 900 &&
                   QGuiApplication::primaryScreen()->geometry().contains(place);
        });
    }

    bool comesToShow(const StatusBadge& badge) {
        const QImage drawn = QPixmap::fromImage(badge_renderer::square(badge, 32)).toImage();
        return runLoopUntil([&] { return icon().icon().pixmap(32).toImage() == drawn; });
    }

    std::unique_ptr<session::ChildProcess> panel;
};

TEST_F(XEmbedPanel, ShowsTheItemHoweverLateItComesAndAgainAfterACrash) {
    makeController(little);
    ASSERT_TRUE(waitForHost(false));
    panel = startTrayer();
    ASSERT_TRUE(waitForHost(true));
    ASSERT_TRUE(waitUntilShown());

    panel->kill(SIGKILL);
    ASSERT_TRUE(waitForHost(false));
    panel = startTrayer();
    ASSERT_TRUE(waitForHost(true));
    EXPECT_TRUE(waitUntilShown());
    EXPECT_THAT(hosts, testing::ElementsAre(false, true, false, true));
}

TEST_F(XEmbedPanel, ShowsWhatTheModelHasComeToBe) {
    model.addRule(trigger::ModifierTap{ModifierKey::rightCommand}, fakes::korean, fakes::english);
    panel = startTrayer();
    makeController(much);
    ASSERT_TRUE(waitForHost(true));
    EXPECT_TRUE(comesToShow({"한", "A", false}));
    const auto firstPicture = icon().icon().cacheKey();
    rig.directory->current = "hangul";
    model.currentSourceChanged();
    EXPECT_TRUE(comesToShow({"한", "A", true}));
    rig.directory->current = "abc";
    model.currentSourceChanged();
    EXPECT_TRUE(runLoopUntil([&] { return icon().icon().cacheKey() == firstPicture; })) << "made once";

    // Where there is no room for two, or a panel may scale it, the current one stands alone.
    const auto square = [](const StatusBadge& badge, int pixels) {
        return QPixmap::fromImage(badge_renderer::square(badge, pixels)).toImage();
    };
    for (const int pixels : {16, 22, 24})
        EXPECT_EQ(square({"A", "B", false}, pixels), square(StatusBadge::single("B"), pixels));
    StatusMenu menu([] { return std::vector<MenuItemSpec>(); }, [](MenuAction) {},
                    {[] { return std::vector<MenuSource>(); }, [](const std::string&) {}});
    TrayItem scaled(TrayKind::statusNotifier, menu);
    scaled.show({"keyboard", StatusBadge{"A", "B", true}});
    EXPECT_EQ(scaled.icon().icon().pixmap(64).toImage(), square(StatusBadge::single("A"), 64));
}

TEST_F(XEmbedPanel, MenuReadsTheStateWheneverItOpensAndItsCheckMarksFollowThatNotTheClick) {
    makeController(much);
    QMenu& menu = *controller->menu();
    const auto open = [&] { Q_EMIT menu.aboutToShow(); };
    const auto item = [&](qsizetype index) { return menu.actions().at(index); };
    open();
    const QAction* const toggle = item(0);
    item(0)->trigger();
    EXPECT_FALSE(model.engineEnabled());
    rig.directory->sources[1].name = "A&B\tC\nD" + std::string(5000, 'x');
    model.sourcesChanged();
    open();
    EXPECT_EQ(item(0), toggle) << "panels know it by its identifier";
    EXPECT_FALSE(toggle->isChecked());
    EXPECT_LT(menu.sizeHint().width(), 2000);
    const QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&menu);
    EXPECT_TRUE(accessible->child(3)->text(QAccessible::Name).startsWith("A&B C Dxx"));

    rig.loginItem->refuses = true;
    QAction* const login = item(menu.actions().size() - 4);
    login->trigger();
    EXPECT_TRUE(runLoopUntil([&] { return !login->isChecked(); }));
    EXPECT_EQ(login->text(), "Launch at login");
}

} // namespace
} // namespace hopsel::test
