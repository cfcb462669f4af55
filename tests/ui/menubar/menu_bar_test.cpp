// The status item as it is for the menu bar of macOS, as far as that can be told without one.
#include "support/fakes/model_rig.h"
#include "support/qt_waiting.h"
#include "ui/l10n/l10n.h"
#include "ui/menubar/macos/menu_bar_host.h"
#include "ui/menubar/status_item_controller.h"
#include "ui/settings/design/colors.h"

#include <QWidgetAction>
#include <cstdlib>
#include <gmock/gmock.h>

namespace hopsel {
namespace {

class MenuBarTest : public testing::Test {
  protected:
    MenuBarTest() {
        l10n::setLanguage(L10nLanguage::en);
        model.addRule(trigger::ModifierTap{ModifierKey::rightCommand}, fakes::korean, fakes::english);
    }
    void SetUp() override {
        EXPECT_EQ(controller.item(), nullptr) << "never inside the call that asks";
        ASSERT_TRUE(test::runLoopUntil([&] { return controller.item() != nullptr; }));
    }
    QWidget* label(int index) const {
        const auto* action = qobject_cast<QWidgetAction*>(controller.menu()->actions().at(index));
        return action != nullptr ? action->defaultWidget() : nullptr;
    }

    fakes::ModelRig rig;
    AppModel& model = rig.launch();
    mutable StatusItemController controller{model, std::make_unique<MenuBarHost>()};
};

TEST_F(MenuBarTest, ThePictureIsBlackForTheSystemToTintAndOneLabelWide) {
    const QIcon icon = controller.item()->icon();
    EXPECT_TRUE(icon.isMask());
    EXPECT_EQ(icon.availableSizes(), (QList<QSize>{{22, 16}, {44, 32}}));
    const QImage picture = icon.pixmap({44, 32}, 1.0).toImage();
    EXPECT_EQ(picture.pixelColor(4, 16), QColor(Qt::black));
    EXPECT_EQ(picture.pixelColor(0, 0).alpha(), 0);
    model.setShowSourceLabel(false);
    EXPECT_TRUE(test::runLoopUntil([&] {
        return controller.item()->icon().availableSizes() == QList<QSize>{{16, 16}, {32, 32}};
    })) << "the symbol";
}

TEST_F(MenuBarTest, AClickLeavesTheMenuToTheSystem) {
    auto* item = const_cast<QSystemTrayIcon*>(controller.item());
    Q_EMIT item->activated(QSystemTrayIcon::Trigger);
    EXPECT_FALSE(controller.menu()->isVisible());
}

TEST_F(MenuBarTest, WhatOnlyInformsIsALabelWithItsIndentAndItsColour) {
    std::string kinds;
    for (int i = 0; i < controller.menu()->actions().size(); ++i) kinds += label(i) != nullptr ? 'l' : '.';
    EXPECT_EQ(kinds, "..ll.ll.ll.....");
    const QFontMetrics header(label(2)->font());
    EXPECT_EQ(label(2)->sizeHint(),
              QSize(21 + header.horizontalAdvance("Current input") + 8 + 16, header.height() + 6));

    const auto inkOf = [](QWidget& widget) {
        QImage drawn(widget.sizeHint(), QImage::Format_ARGB32);
        drawn.fill(Qt::white);
        widget.render(&drawn, {}, {}, QWidget::DrawChildren);
        QColor strongest(Qt::white);
        int left = drawn.width();
        for (int y = 0; y < drawn.height(); ++y) {
            for (int x = 0; x < drawn.width(); ++x) {
                const QColor pixel = drawn.pixelColor(x, y);
                if (pixel.lightness() < 250) left = std::min(left, x);
                if (pixel.lightness() < strongest.lightness()) strongest = pixel;
            }
        }
        return std::pair(left, strongest);
    };
    const auto [headerLeft, blue] = inkOf(*label(2));
    EXPECT_NEAR(headerLeft, 21, 2);
    EXPECT_GT(blue.blue(), blue.red() + 100);
    const auto [lineLeft, grey] = inkOf(*label(3));
    EXPECT_NEAR(lineLeft, 29, 2);
    EXPECT_LT(std::abs(grey.blue() - grey.red()), 30);

    const int narrow = label(3)->sizeHint().width();
    rig.directory->current = "hangul";
    model.currentSourceChanged();
    EXPECT_TRUE(test::runLoopUntil([&] { return label(3)->sizeHint().width() > narrow; }))
        << "the same label, of the longer name";
}

} // namespace
} // namespace hopsel
