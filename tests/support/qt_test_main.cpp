// The main function of tests whose code under test lives in the toolkit's event loop.
#include "support/qt_waiting.h"

#include <QCoreApplication>
#include <gmock/gmock.h>

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    const QCoreApplication application(argc, argv);
    hopsel::test::waitInEventLoop();
    return RUN_ALL_TESTS();
}
