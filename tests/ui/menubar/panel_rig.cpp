#include "panel_rig.h"

#include "session/private_bus.h"
#include "session/x_server.h"
#include "ui/l10n/l10n.h"
#include "ui/settings/design/colors.h"

#include <QApplication>

namespace hopsel::test {

void PanelRig::makeController(TrayHost::Patience patience) {
    controller = std::make_unique<StatusItemController>(
        model, std::make_unique<TrayHost>(QDBusConnection::sessionBus(), true, patience));
    controller->onHostChanged = [this](bool hasHost) { hosts.push_back(hasHost); };
}

bool PanelRig::waitForHost(bool hasHost) {
    return runLoopUntil([&] { return !hosts.empty() && hosts.back() == hasHost; });
}

std::unique_ptr<session::ChildProcess> PanelRig::startTrayer() {
    session::ChildProcess::Options options;
    options.program = "trayer";
    options.package = "trayer";
    options.arguments = {"--edge", "top", "--align", "right", "--widthtype", "request", "--height", "24"};
    options.errors = session::ChildProcess::Output::discard;
    return std::make_unique<session::ChildProcess>(options);
}

} // namespace hopsel::test

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    if (testing::GTEST_FLAG(list_tests)) return RUN_ALL_TESTS();

    hopsel::session::XServer server;
    server.startWindowManager();
    const hopsel::session::PrivateBus bus;
    qputenv("QT_QPA_PLATFORM", "xcb");
    qunsetenv("QT_QPA_PLATFORMTHEME");
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    hopsel::design::useAppearance(hopsel::design::Appearance::light);
    hopsel::l10n::setLanguage(hopsel::L10nLanguage::en);
    hopsel::test::waitInEventLoop();
    return RUN_ALL_TESTS();
}
