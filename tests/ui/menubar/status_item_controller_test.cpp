#include "support/fakes/model_rig.h"
#include "support/qt_waiting.h"
#include "ui/l10n/l10n.h"
#include "ui/menubar/badge_renderer.h"
#include "ui/menubar/linux/tray_item.h"
#include "ui/menubar/macos/menu_bar_item.h"
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
    std::unique_ptr<PanelItem> makeItem(TrayKind kind, StatusMenu& menu) override {
        made.push_back(kind);
        auto item = std::make_unique<TrayItem>(kind, menu);
        icon = &item->icon();
        return item;
    }

    OnChange tell;
    std::vector<TrayKind> made;
    const QSystemTrayIcon* icon = nullptr;
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
        return test::runLoopUntil([&] { return host->icon->icon().pixmap(pixels).toImage() == drawn; });
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
    const PanelItem* item = controller.item();
    ASSERT_NE(item, nullptr);
    EXPECT_TRUE(host->icon->isVisible());
    host->tell(TrayKind::none);
    host->tell(TrayKind::xEmbed);
    EXPECT_EQ(controller.item(), item);
    EXPECT_THAT(host->made, ElementsAre(TrayKind::xEmbed));
    EXPECT_THAT(hosts, ElementsAre(false, true, false, true));
}

TEST_F(StatusItemControllerTest, ShowsWhatTheModelHasComeToBeInTheInkOfTheAppearance) {
    host->tell(TrayKind::xEmbed);
    EXPECT_TRUE(comesToShow({"한", "A", false}, 32, Qt::black));
    EXPECT_EQ(host->icon->toolTip(), "Hopsel, ABC");
    rig.directory->current = "hangul";
    model.currentSourceChanged();
    EXPECT_TRUE(comesToShow({"한", "A", true}, 32, Qt::black));
    EXPECT_EQ(host->icon->toolTip(), "Hopsel, Korean");
    design::useAppearance(design::Appearance::dark);
    EXPECT_TRUE(comesToShow({"한", "A", true}, 32, Qt::white));
    design::useAppearance(design::Appearance::light);
    qputenv("XDG_CURRENT_DESKTOP", "ubuntu:GNOME");
    EXPECT_EQ(TrayItem::likelyInk(), QColor(Qt::white)) << "its panel is always dark";

    rig.directory->current = "gone";
    model.currentSourceChanged();
    EXPECT_TRUE(test::runLoopUntil([&] { return host->icon->toolTip() == "Hopsel"; }));
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

/// What the system's item is told, a line each.
class FakeStatusBarItem final : public StatusBarItem {
  public:
    explicit FakeStatusBarItem(std::vector<std::string>& told) : told_(told) {}
    void showSymbol(const std::string& name, const std::string& description) override {
        told_.push_back("symbol " + name + ", " + description);
    }
    void showPicture(const TemplatePicture& picture) override {
        std::string line =
            "picture " + std::to_string(int(picture.width)) + "x" + std::to_string(int(picture.height)) + ":";
        for (const std::string& png : picture.pngs) {
            const QImage image = QImage::fromData(QByteArray::fromStdString(png), "PNG");
            line += " " + std::to_string(image.width()) + "x" + std::to_string(image.height());
            const QPoint inTheLeftHalf(image.width() / 10, image.height() / 2);
            EXPECT_EQ(image.pixelColor(inTheLeftHalf), QColor(Qt::black)) << "the current one is filled";
        }
        told_.push_back(line);
    }
    void setAccessibilityLabel(const std::string& label) override { told_.push_back(label); }

  private:
    std::vector<std::string>& told_;
};

TEST(MenuBarItem, ShowsSymbolsOfTheSystemAndBadgesAsWideAsTheirLabels) {
    std::vector<std::string> told;
    MenuBarItem item(std::make_unique<FakeStatusBarItem>(told));
    item.show({"keyboard", std::nullopt});
    item.show({"keyboard", std::nullopt});
    item.show({"keyboard", StatusBadge{"A", "한", true}});
    item.show({"keyboard", StatusBadge::single("한")});
    item.show({"pause.circle", std::nullopt});
    item.setName("Hopsel, Korean");
    EXPECT_THAT(told,
                ElementsAre("symbol keyboard, Hopsel", "picture 40x16: 40x16 80x32",
                            "picture 22x16: 22x16 44x32", "symbol pause.circle, Hopsel", "Hopsel, Korean"));
}

} // namespace
} // namespace hopsel
