// Measures the whole program on an X server of its own: hopsel_x11_bench <hopsel> <bare switcher>
// [switching]. With the last word, only how long a switch takes.
//
// Run it alone on a quiet machine, with programs from a RelWithDebInfo or Release build. It takes about three
// minutes and prints lines that are described in measurement.h. Budgets are not enforced here: how fast
// things are depends on the machine, and no test may fail for that.
#include "benchmarks/benchmarks.h"
#include "session/x_layouts.h"
#include "session/x_server.h"

#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string_view>

int main(int argc, char** argv) {
    using namespace hopsel;
    if (argc != 3 && (argc != 4 || std::string_view(argv[3]) != "switching")) {
        std::fputs("usage: hopsel_x11_bench <hopsel> <bare switcher> [switching]\n", stderr);
        return EXIT_FAILURE;
    }
    const bench::Programs programs{.hopsel = argv[1], .bareSwitcher = argv[2]};
    try {
        session::XServer server;
        session::setLayouts("us,ru", {}, bench::layoutOptions);
        server.startWindowManager();
        server.startPanel();
        bench::measureSwitchLatency(programs);
        if (argc == 4) return EXIT_SUCCESS;
        bench::measurePassedKeys(programs);
        bench::measureStart(programs);
        bench::measureIdle(programs);
        bench::measureMemory(programs);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "hopsel_x11_bench: %s\n", error.what());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
