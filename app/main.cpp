// The process entry: the event loop, the signals that end it, and the delegate that builds everything.
#include "app/app_delegate.h"
#include "app/linux/session/preferred_languages.h"
#include "app/termination_signals.h"
#include "core/base/product.h"
#include "ui/l10n/l10n.h"

#include <QCoreApplication>
#include <csignal>
#include <cstdlib>

int main(int argc, char** argv) {
    // Qt's own dispatcher comes back from a wait some 10 µs sooner than the one over GLib, on every trigger.
    // Only this process is to use it, not what it starts.
    qputenv("QT_NO_GLIB", "1");
    QCoreApplication application(argc, argv);
    qunsetenv("QT_NO_GLIB");
    QCoreApplication::setApplicationName(QString::fromUtf8(hopsel::product::applicationIdentifier.data()));
    QCoreApplication::setApplicationVersion(HOPSEL_VERSION);
    hopsel::l10n::setPreferredLanguages([] { return hopsel::preferredLanguages(); });

    // First, so that a signal during the start ends the program in order as soon as the loop runs.
    const hopsel::TerminationSignals signals([] { QCoreApplication::quit(); });
    // Stopped from a terminal it would leave the keyboard standing still at the next shortcut.
    std::signal(SIGTSTP, SIG_IGN);
    hopsel::AppDelegate delegate;
    switch (delegate.didFinishLaunching()) {
    case hopsel::AppDelegate::Launch::running: break;
    case hopsel::AppDelegate::Launch::alreadyRunning: return EXIT_SUCCESS;
    case hopsel::AppDelegate::Launch::impossible: return EXIT_FAILURE;
    }
    const int status = QCoreApplication::exec();
    delegate.willTerminate();
    return status;
}
