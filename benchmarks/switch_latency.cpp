#include "benchmarks/benchmarks.h"
#include "benchmarks/measurement.h"
#include "benchmarks/trigger_key.h"

#include <array>

namespace hopsel::bench {

namespace {

// Many short rounds: a program can be lucky or unlucky with its processor for as long as it runs.
constexpr int rounds = 30;
constexpr int samplesPerRound = 50;

struct Contestant {
    Switcher switcher;
    Samples samples;
};

void playRound(Contestant& contestant) {
    const Running program = contestant.switcher.start();
    TriggerKey().tapUntilSwitched();
    // The server tells those first who asked last. Who asks last here hears of the switch when it is made,
    // not after the program that made it has been told, and has perhaps taken the processor.
    TriggerKey trigger;
    for (int i = 0; i < samplesPerRound; ++i) contestant.samples.add(trigger.unhurriedTap() * 1000);
}

} // namespace

// In turns, each several times: what else the machine does then hits all of them alike.
void measureSwitchLatency(const Programs& programs) {
    std::array<Contestant, 3> contestants{
        {{bareSwitcher(programs), {}}, {xcapeSwitcher(), {}}, {hopselSwitcher(programs), {}}}};
    for (int round = 0; round < rounds; ++round) {
        for (Contestant& contestant : contestants) playRound(contestant);
    }
    const auto& [bare, xcape, hopsel] = contestants;
    for (const Contestant* other : {&bare, &xcape})
        report("trigger key to group, " + other->switcher.name, other->samples);
    report("trigger key to group, hopsel", hopsel.samples, 0.15, 1.0);
    reportRatio("trigger key to group, hopsel to bare XCB client median", hopsel.samples.median(),
                bare.samples.median(), 1.25);
    reportRatio("trigger key to group, hopsel to xcape median", hopsel.samples.median(),
                xcape.samples.median(), 1.0);
    reportRatio("trigger key to group, hopsel to xcape p99", hopsel.samples.p99(), xcape.samples.p99(), 1.0);
}

} // namespace hopsel::bench
