// The process entry: the preview renderer, or the application with its event loop, the signals that end it,
// and the delegate that builds everything.
#include "app/app_delegate.h"
#include "app/command_line.h"
#include "app/quit_request.h"
#include "app/remote_commands.h"
#include "app/termination_signals.h"
#include "app/toolkit_texts.h"
#include "core/base/product.h"
#include "model/texts/l10n.h"
#include "platform/interface/live_platform.h"
#include "ui/design/accessible_roles.h"
#include "ui/design/accessible_scroll_area.h"
#include "ui/preview/render_ui.h"

#include <QApplication>
#include <QEvent>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string>

namespace {

using Wish = hopsel::CommandLine::Wish;

constexpr int wrongUsage = 2;

int runApplication(int argc, char** argv, hopsel::AppDelegate::Start start) {
    std::unique_ptr<hopsel::Launch> launch;
    try {
        launch = hopsel::makeLaunch();
    } catch (const std::runtime_error& error) {
        std::fprintf(stderr, "hopsel: %s\n", error.what());
        return EXIT_FAILURE;
    }
    QApplication application(argc, argv);
    hopsel::QuitRequest quitRequest;
    application.installEventFilter(&quitRequest);
    hopsel::design::describeScrollAreasSafely();
    hopsel::design::describeRoles();
    launch->applicationMade();
    const hopsel::ToolkitTexts toolkitTexts;
    QApplication::setApplicationDisplayName(QString::fromUtf8(hopsel::product::name.data()));
    QApplication::setDesktopFileName(QString::fromUtf8(hopsel::product::bundleIdentifier.data()));
    QApplication::setQuitOnLastWindowClosed(false);

    hopsel::AppDelegate delegate(hopsel::makeSingleInstance(), hopsel::makePlatform, start);
    // Before the start, so that a signal during it ends the program in order as soon as the loop runs. Not
    // `quit`, which would close the windows one by one, and a window that is closed may have a question. The
    // engine stops first: a guest key that waits for the user's fingers would hold up the end.
    const hopsel::TerminationSignals signals([&delegate] {
        delegate.willTerminate();
        QCoreApplication::exit();
    });
    const auto result = delegate.didFinishLaunching();
    launch->finished();
    switch (result) {
    case hopsel::AppDelegate::Launch::running: break;
    case hopsel::AppDelegate::Launch::alreadyRunning: return EXIT_SUCCESS;
    case hopsel::AppDelegate::Launch::impossible: return EXIT_FAILURE;
    }
    const int status = QApplication::exec();
    delegate.willTerminate();
    // What the end has put off would wait for a loop that never runs again.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return status;
}

int render(int argc, char** argv, const std::string& directory) {
    hopsel::render_ui::prepareEnvironment();
    const QApplication application(argc, argv);
    return hopsel::render_ui::run(directory);
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication::setApplicationName(QString::fromUtf8(hopsel::product::applicationIdentifier.data()));
    QCoreApplication::setApplicationVersion(HOPSEL_VERSION);
    hopsel::l10n::setPreferredLanguages(hopsel::preferredLanguages);

    const auto commandLine = hopsel::CommandLine::read({argv + 1, argv + argc});
    switch (commandLine.wish) {
    case Wish::run: return runApplication(argc, argv, hopsel::AppDelegate::Start::byHand);
    case Wish::background: return runApplication(argc, argv, hopsel::AppDelegate::Start::inBackground);
    case Wish::renderUI: return render(argc, argv, commandLine.renderDirectory);
    case Wish::help: std::fputs(hopsel::CommandLine::help().c_str(), stdout); return EXIT_SUCCESS;
    case Wish::version: std::puts("Hopsel " HOPSEL_VERSION); return EXIT_SUCCESS;
    case Wish::ask: {
        const QCoreApplication application(argc, argv);
        return hopsel::askRunningCopy(commandLine, *hopsel::makeSingleInstance());
    }
    case Wish::refuse: break;
    }
    std::fprintf(stderr, "hopsel: %s (see hopsel --help)\n", commandLine.problem.c_str());
    return wrongUsage;
}
