#include "support/fakes/model_rig.h"
#include "support/qt_waiting.h"
#include "ui/l10n/l10n.h"
#include "ui/menubar/badge_renderer.h"
#include "ui/menubar/macos/menu_bar_host.h"
#include "ui/menubar/status_item_controller.h"
#include "ui/settings/design/colors.h"

#include <gmock/gmock.h>

namespace hopsel {
namespace {

using fakes::english;
using fakes::korean;
using testing::ElementsAre;
using testing::IsEmpty;

class FakeTrayHost final : public TrayHosting {
  public:
    void start(OnChange onChange) override { tell = std::move(onChange); }
    void settleOn(TrayKind kind) override { settled.push_back(kind); }

    OnChange tell;
    std::vector<TrayKind> settled;
};

class StatusItemControllerTest : public testing::Test {
  protected:
    StatusItemControllerTest() {
        l10n::setLanguage(L10nLanguage::en);
        qunsetenv("XDG_CURRENT_DESKTOP");
        model.addRule(trigger::ModifierTap{ModifierKey::rightCommand}, korean, english);
        rig.calls.clear();
        controller.onHostChanged = [this](bool hasHost) { hosts.push_back(hasHost); };
    }

    bool comesToShow(const StatusBadge& badge, int pixels, const QColor& ink) {
        const QImage drawn = QPixmap::fromImage(badge_renderer::square(badge, pixels, ink)).toImage();
        return test::runLoopUntil(
            [&] { return controller.item()->icon().pixmap(pixels).toImage() == drawn; });
    }
    void click(const QString& text) {
        controller.refresh();
        for (QAction* action : controller.menu()->actions())
            if (action->text() == text) return action->trigger();
        FAIL() << "no item " << text.toStdString();
    }

    fakes::ModelRig rig;
    AppModel& model = rig.launch();
    std::vector<bool> hosts;
    FakeTrayHost* host = new FakeTrayHost; // the controller's
    StatusItemController controller{model, std::unique_ptr<TrayHosting>(host)};
};

TEST_F(StatusItemControllerTest, MakesTheItemWhenThereIsAPanelForItAndKeepsIt) {
    host->tell(TrayKind::none);
    EXPECT_EQ(controller.item(), nullptr);
    EXPECT_FALSE(controller.hasHost());
    host->tell(TrayKind::xEmbed);
    const QSystemTrayIcon* item = controller.item();
    ASSERT_NE(item, nullptr);
    EXPECT_TRUE(item->isVisible());
    host->tell(TrayKind::none);
    host->tell(TrayKind::xEmbed);
    EXPECT_EQ(controller.item(), item);
    EXPECT_THAT(host->settled, ElementsAre(TrayKind::xEmbed));
    EXPECT_THAT(hosts, ElementsAre(false, true, false, true));
}

TEST_F(StatusItemControllerTest, ShowsWhatTheModelHasComeToBeInTheInkOfTheAppearance) {
    host->tell(TrayKind::xEmbed);
    EXPECT_TRUE(comesToShow({"한", "A", false}, 32, Qt::black));
    EXPECT_EQ(controller.item()->toolTip(), "Hopsel, ABC");
    rig.directory->current = "hangul";
    model.currentSourceChanged();
    EXPECT_TRUE(comesToShow({"한", "A", true}, 32, Qt::black));
    EXPECT_EQ(controller.item()->toolTip(), "Hopsel, Korean");
    design::useAppearance(design::Appearance::dark);
    EXPECT_TRUE(comesToShow({"한", "A", true}, 32, Qt::white));
    design::useAppearance(design::Appearance::light);
    qputenv("XDG_CURRENT_DESKTOP", "ubuntu:GNOME");
    EXPECT_EQ(StatusItemController::likelyInk(), QColor(Qt::white)) << "its panel is always dark";

    rig.directory->current = "gone";
    model.currentSourceChanged();
    EXPECT_TRUE(test::runLoopUntil([&] { return controller.item()->toolTip() == "Hopsel"; }));
}

TEST_F(StatusItemControllerTest, HandsOnItsOwnActionsAndGivesTheOthersToTheModel) {
    click("Settings…"); // nobody there to be told: no harm
    std::string told;
    controller.onOpenSettings = [&] { told += "settings "; };
    controller.onOpenBugReport = [&] { told += "report "; };
    controller.onQuit = [&] { told += "quit "; };
    click("Settings…");
    click("Report a Bug…");
    click("Quit Hopsel");
    EXPECT_EQ(told, "settings report quit ");
    EXPECT_THAT(rig.calls, IsEmpty());
    click("Launch at login");
    EXPECT_EQ(model.launchStatus(), LoginItemStatus::enabled);
    click("Input Switching");
    EXPECT_FALSE(model.engineEnabled());
}

TEST_F(StatusItemControllerTest, ShowsTheCurrentLabelAloneWhereBothWouldNotBeLegible) {
    const auto square = [](const StatusBadge& badge, int pixels) {
        return badge_renderer::square(badge, pixels, Qt::black);
    };
    for (const int pixels : {16, 22, 24}) {
        EXPECT_EQ(square({"A", "B", true}, pixels), square(StatusBadge::single("A"), pixels));
        EXPECT_EQ(square({"A", "B", false}, pixels), square(StatusBadge::single("B"), pixels));
    }
    EXPECT_NE(square({"A", "B", true}, 32), square({"A", "B", false}, 32));
    host->tell(TrayKind::statusNotifier); // such a panel may scale it
    EXPECT_TRUE(comesToShow(StatusBadge::single("A"), 64, Qt::black));
}

TEST_F(StatusItemControllerTest, LeavesTintAndMenuToTheMenuBarOfMacOS) {
    StatusItemController inMenuBar{model, std::make_unique<MenuBarHost>()};
    EXPECT_EQ(inMenuBar.item(), nullptr) << "never inside the call that asks";
    ASSERT_TRUE(test::runLoopUntil([&] { return inMenuBar.item() != nullptr; }));
    const QIcon icon = inMenuBar.item()->icon();
    EXPECT_TRUE(icon.isMask());
    EXPECT_EQ(icon.availableSizes(), (QList<QSize>{{22, 16}, {44, 32}}));
    EXPECT_EQ(icon.pixmap({44, 32}, 1.0).toImage().pixelColor(4, 16), QColor(Qt::black));
    Q_EMIT const_cast<QSystemTrayIcon*>(inMenuBar.item())->activated(QSystemTrayIcon::Trigger);
    EXPECT_FALSE(inMenuBar.menu()->isVisible());
}

} // namespace
} // namespace hopsel
