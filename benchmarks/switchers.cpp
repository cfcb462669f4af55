#include "benchmarks/switchers.h"

#include "session/hopsel_program.h"

namespace hopsel::bench {

using namespace session;

const char* const layoutOptions = "grp:sclk_toggle";

Switcher hopselSwitcher(const Programs& programs) {
    return {"hopsel", [path = programs.hopsel] { return std::make_shared<HopselProgram>(path, twoRules); }};
}

Switcher bareSwitcher(const Programs& programs) {
    return {"bare XCB client", [path = programs.bareSwitcher] {
                ChildProcess::Options options;
                options.program = path;
                return std::make_shared<ChildProcess>(options);
            }};
}

Switcher xcapeSwitcher() {
    return {"xcape", [] {
                ChildProcess::Options options;
                options.program = "xcape";
                options.package = "xcape";
                // -d keeps it in the foreground, at the price of a few lines to nowhere; a tap may last 900
                // ms.
                options.arguments = {"-d", "-t", "900", "-e", "Super_R=ISO_Next_Group"};
                options.errors = ChildProcess::Output::discard;
                return std::make_shared<ChildProcess>(options);
            }};
}

} // namespace hopsel::bench
