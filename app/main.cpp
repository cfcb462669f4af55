// The process entry: the preview renderer, or the application with its event loop, the signals that end it,
// and the delegate that builds everything.
#include "app/accessible_application.h"
#include "app/app_delegate.h"
#include "app/linux/session/preferred_languages.h"
#include "app/termination_signals.h"
#include "core/base/product.h"
#include "ui/l10n/l10n.h"
#include "ui/preview/render_ui.h"

#include <QApplication>
#include <QIcon>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>

namespace {

/// The directory behind "--render-ui"; null when it is not asked for. As the last argument it means nothing.
const char* renderDirectory(int argc, char** argv) {
    for (int i = 0; i + 1 < argc; ++i)
        if (std::string_view(argv[i]) == "--render-ui") return argv[i + 1];
    return nullptr;
}

/// A variable of the environment that the toolkit sees differently while the application is made; what we
/// start sees it as it was.
class HiddenVariable {
  public:
    HiddenVariable(const char* name, bool hide) : name_(name), value_(qgetenv(name)) {
        if (hide) qunsetenv(name_);
    }
    void showAgain() const {
        if (value_.isNull())
            qunsetenv(name_);
        else
            qputenv(name_, value_);
    }

  private:
    const char* name_;
    QByteArray value_;
};

/// Without a session bus there is none for us either: the D-Bus library would start one.
HiddenVariable refuseBusOfOurOwn() {
    const std::string runtimeBus = qEnvironmentVariable("XDG_RUNTIME_DIR").toStdString() + "/bus";
    HiddenVariable address("DBUS_SESSION_BUS_ADDRESS", false);
    if (qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS") && !std::filesystem::exists(runtimeBus))
        qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
    return address;
}

int runApplication(int argc, char** argv) {
    try {
        hopsel::LinuxPlatform::requireSession(); // without it the toolkit would end in a crash report
    } catch (const std::runtime_error& error) {
        std::fprintf(stderr, "hopsel: %s\n", error.what());
        return EXIT_FAILURE;
    }
    const HiddenVariable busAddress = refuseBusOfOurOwn();
    // Qt's own dispatcher comes back from a wait some 10 µs sooner than the one over GLib, on every trigger.
    // Only this process is to use it, not what it starts.
    qputenv("QT_NO_GLIB", "1");
    // The themes of the GTK desktops bring a second toolkit and three times our memory with them; we draw
    // everything ourselves.
    const HiddenVariable desktop("XDG_CURRENT_DESKTOP", !qgetenv("XDG_CURRENT_DESKTOP").contains("KDE"));
    QApplication application(argc, argv);
    hopsel::describeApplicationToScreenReaders();
    desktop.showAgain();
    qunsetenv("QT_NO_GLIB");
    QApplication::setApplicationDisplayName(QString::fromUtf8(hopsel::product::name.data()));
    QApplication::setDesktopFileName("app.hopsel.Hopsel");
    QApplication::setQuitOnLastWindowClosed(false);

    // First, so that a signal during the start ends the program in order as soon as the loop runs. Not
    // `quit`, which would close the windows one by one, and a window that is closed may have a question.
    const hopsel::TerminationSignals signals([] { QCoreApplication::exit(); });
    // Stopped from a terminal it would leave the keyboard standing still at the next shortcut.
    std::signal(SIGTSTP, [](int) {}); // unlike being ignored, what we start does not inherit this
    hopsel::AppDelegate delegate;
    const auto launch = delegate.didFinishLaunching();
    busAddress.showAgain();
    switch (launch) {
    case hopsel::AppDelegate::Launch::running: break;
    case hopsel::AppDelegate::Launch::alreadyRunning: return EXIT_SUCCESS;
    case hopsel::AppDelegate::Launch::impossible: return EXIT_FAILURE;
    }
    const int status = QApplication::exec();
    delegate.willTerminate();
    return status;
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication::setApplicationName(QString::fromUtf8(hopsel::product::applicationIdentifier.data()));
    QCoreApplication::setApplicationVersion(HOPSEL_VERSION);
    hopsel::l10n::setPreferredLanguages([] { return hopsel::preferredLanguages(); });

    const char* directory = renderDirectory(argc, argv);
    if (directory == nullptr) return runApplication(argc, argv);
    hopsel::render_ui::prepareEnvironment();
    const QApplication application(argc, argv);
    return hopsel::render_ui::run(directory);
}
