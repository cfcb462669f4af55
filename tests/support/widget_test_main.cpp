// The main function of tests with widgets: no display is needed, and no desktop's theme comes into it.
#include "support/qt_waiting.h"
#include "ui/design/colors.h"

#include <QApplication>
#include <gmock/gmock.h>

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qunsetenv("QT_QPA_PLATFORMTHEME");
    const QApplication application(argc, argv);
    hopsel::design::useAppearance(hopsel::design::Appearance::light);
    hopsel::test::waitInEventLoop();
    return RUN_ALL_TESTS();
}
