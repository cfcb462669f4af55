// The main function of tests with widgets in a real X session, with a window manager and a bus.
#include "model/texts/l10n.h"
#include "session/private_bus.h"
#include "session/x_layouts.h"
#include "session/x_server.h"
#include "support/qt_waiting.h"
#include "ui/design/colors.h"

#include <QApplication>
#include <gmock/gmock.h>

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    if (testing::GTEST_FLAG(list_tests)) return RUN_ALL_TESTS();

    hopsel::session::XServer server;
    server.startWindowManager();
    hopsel::session::setLayouts("us");
    const hopsel::session::PrivateBus bus;
    qputenv("QT_QPA_PLATFORM", "xcb");
    for (const char* variable : {"QT_QPA_PLATFORMTHEME", "XDG_CURRENT_DESKTOP"}) qunsetenv(variable);
    qputenv("QT_IM_MODULE", "compose");
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    hopsel::design::useAppearance(hopsel::design::Appearance::light);
    hopsel::l10n::setLanguage(hopsel::L10nLanguage::en);
    hopsel::test::waitInEventLoop();
    return RUN_ALL_TESTS();
}
