#include "benchmarks/benchmarks.h"
#include "benchmarks/idle.h"
#include "benchmarks/measurement.h"
#include "benchmarks/process_figures.h"
#include "benchmarks/trigger_key.h"
#include "session/hopsel_program.h"

namespace hopsel::bench {

using namespace session;

namespace {

constexpr int starts = 20;
constexpr int switches = 200000; ///< each changes the panel's icon
constexpr int keyEvents = 1000000;
constexpr int lettersInOneGo = 500; ///< two key events each

} // namespace

void measureStart(const Programs& programs) {
    Samples samples;
    for (int i = 0; i < starts; ++i) {
        TriggerKey trigger;
        const double started = monotonicSeconds();
        const Running program = hopselSwitcher(programs).start();
        samples.add((trigger.tapUntilSwitched() - started) * 1000);
    }
    report("start to first switch", samples, 100.0);
}

void measureIdle(const Programs& programs) {
    HopselProgram program(programs.hopsel, twoRules);
    TriggerKey().tapUntilSwitched();
    reportIdle("idle", program.process().id(), idleWakeUps);
}

void measureMemory(const Programs& programs) {
    HopselProgram program(programs.hopsel, twoRules);
    TriggerKey trigger;
    trigger.tapUntilSwitched();
    const auto reportMemory = [&](const std::string& when) {
        const Memory memory = memoryOf(program.process().id());
        report("memory (PSS) " + when, static_cast<double>(memory.proportional), "kB");
        return static_cast<double>(memory.own);
    };
    const double atStart = reportMemory("after the start");
    for (int i = 0; i < switches; ++i) trigger.typeThenTap(0);
    const double afterSwitches = reportMemory("after 200,000 switches");
    for (int events = 0; events < keyEvents; events += 2 * lettersInOneGo)
        trigger.typeThenTap(lettersInOneGo);
    const double afterKeys = reportMemory("after 1,000,000 key events more");
    report("memory, growth by switches", afterSwitches - atStart, "kB", 1000.0);
    report("memory, growth by key events", afterKeys - afterSwitches, "kB", 0.0);
}

} // namespace hopsel::bench
