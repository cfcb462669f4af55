// Measures the program with the real daemons of IBus and Fcitx5, each in a session of its own:
// hopsel_input_method_bench <hopsel>. Like x11_bench.cpp otherwise.
#include "benchmarks/method_latency.h"
#include "session/fcitx_session.h"
#include "session/ibus_session.h"
#include "session/text_field.h"
#include "session/x_keyboard.h"
#include "session/x_layouts.h"
#include "session/x_server.h"

#include <QCoreApplication>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>

namespace hopsel::bench {
namespace {

using namespace session;

void prepare(XServer& server) {
    setLayouts("us,kr", ",kr104");
    server.startWindowManager();
    server.startPanel();
}

void measureIbus(const std::string& hopsel) {
    XServer server;
    prepare(server);
    IbusSession session;
    IbusSession::setEngines("['xkb:us::eng', 'hangul']");
    IbusSession::setHangulStart("hangul");
    session.startDaemon(IbusSession::Panel::ofIbus);
    const auto watch = MethodWatch::ofIbus();
    const TextField field("ibus");
    const Framework framework{.name = "IBus",
                              .prefix = "ibus:",
                              .english = "xkb:us::eng",
                              .korean = "hangul",
                              .tool = {"ibus", "engine"},
                              .triggerKey = {key::leftSuper, key::space},
                              .switchesOnPress = false};
    measureMethodLatency(framework, *watch, hopsel);
}

void measureFcitx(const std::string& hopsel) {
    XServer server;
    prepare(server);
    FcitxSession session;
    const auto watch = MethodWatch::ofFcitx();
    session.startDaemon();
    // A text field that is there first may go without an input method.
    ChildProcess::Options wait;
    wait.program = "gdbus";
    wait.arguments = {"wait", "--session", "--timeout", "10", "org.fcitx.Fcitx5"};
    wait.package = "libglib2.0-bin";
    runProgram(wait, std::chrono::seconds(15));
    const TextField field("fcitx");
    const Framework framework{.name = "Fcitx5",
                              .prefix = "fcitx:",
                              .english = "keyboard-us",
                              .korean = "hangul",
                              .tool = {"fcitx5-remote", "-s"},
                              .triggerKey = {key::leftControl, key::space},
                              .switchesOnPress = true};
    measureMethodLatency(framework, *watch, hopsel);
}

} // namespace
} // namespace hopsel::bench

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: hopsel_input_method_bench <hopsel>\n", stderr);
        return EXIT_FAILURE;
    }
    const QCoreApplication application(argc, argv);
    try {
        hopsel::bench::measureIbus(argv[1]);
        hopsel::bench::measureFcitx(argv[1]);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "hopsel_input_method_bench: %s\n", error.what());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
