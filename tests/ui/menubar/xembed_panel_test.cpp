#include "panel_rig.h"
#include "session/x_keyboard.h"
#include "ui/menubar/linux/tray_item.h"

#include <QGuiApplication>
#include <QScreen>
#include <csignal>

namespace hopsel::test {
namespace {

using testing::ElementsAre;

class XEmbedPanel : public PanelRig {
  protected:
    /// At the panel's end in the corner; on its way there it is partly outside the screen.
    bool waitUntilShown() {
        return runLoopUntil([this] {
            if (controller->item() == nullptr) return false;
            const QRect place = itemPlace();
            return place.width() >= 16 && place.right() > 900 &&
                   QGuiApplication::primaryScreen()->geometry().contains(place);
        });
    }
    QRect itemPlace() const { return dynamic_cast<const TrayItem&>(*controller->item()).icon().geometry(); }
    bool opensMenu(std::uint8_t button) {
        const QPoint middle = itemPlace().center();
        mouse.movePointer(static_cast<std::int16_t>(middle.x()), static_cast<std::int16_t>(middle.y()));
        mouse.button(button);
        const bool isOpen = runLoopUntil([this] { return controller->menu()->isVisible(); });
        controller->menu()->hide();
        return isOpen;
    }

    session::XKeyboard mouse;
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
    EXPECT_THAT(hosts, ElementsAre(false, true, false, true));
}

TEST_F(XEmbedPanel, OpensTheMenuWithEitherButton) {
    panel = startTrayer();
    makeController(much);
    ASSERT_TRUE(waitUntilShown());
    EXPECT_TRUE(opensMenu(1));
    EXPECT_TRUE(opensMenu(3));
}

} // namespace
} // namespace hopsel::test
