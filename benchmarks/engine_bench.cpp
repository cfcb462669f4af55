// What the engine costs per event that triggers nothing, per switch, and over a long life. Events take the
// way they take in the program: through the callback that the engine installed in its source.
//
// Run it alone on a quiet machine, in a RelWithDebInfo or Release build. Times are medians over the
// repetitions.
#include "benchmarks/allocation_count.h"
#include "benchmarks/measurement.h"
#include "benchmarks/process_figures.h"
#include "support/fakes/engine_rig.h"

#include <benchmark/benchmark.h>
#include <map>
#include <string>
#include <thread>
#include <unistd.h>

namespace hopsel {
namespace {

using enum ModifierKey;

constexpr const char* eventThatTriggersNothing = "listening, an event that triggers nothing";
constexpr const char* keyThatTriggersNothing = "filtering, a key that triggers nothing";

class Engine {
  public:
    Engine() {
        Config config;
        config.rules = {fakes::tapRule("tap", rightCommand, "A", "B"),
                        fakes::tapRule("other", rightOption, "A", "C"),
                        fakes::shortcutRule("shortcut", {49, {leftShift}}, "A", "B"),
                        fakes::shortcutRule("function", {96, {}}, "A", "B")};
        rig.engine->apply(config);
        rig.engine->start();
        rig.engine->setOnEvent([this](const EngineEvent&) { ++told; });
    }

    void switchOnce() {
        rig.press(rightCommand);
        rig.release(rightCommand);
        rig.scheduler.runAll();
        rig.service->switches.clear(); // what the fake remembers is not what is measured
    }

    fakes::EngineRig rig;
    benchmark::IterationCount told = 0;
};

/// Typing, a capital letter, copying with the trigger key, a click with Control: nothing that fires.
std::vector<RawEvent> ordinaryEvents() {
    std::vector<RawEvent> events;
    const auto add = [&](RawEventType type, ModifierSet held, std::uint16_t code = 0) {
        events.push_back({type, code, flagsOf(held), 64 + static_cast<double>(events.size()) * 0.03, false});
    };
    const auto with = [&](ModifierKey modifier, RawEventType what) {
        add(RawEventType::flagsChanged, {modifier}, keyCode(modifier));
        add(what, {modifier});
        if (what == RawEventType::keyDown) add(RawEventType::keyUp, {modifier});
        add(RawEventType::flagsChanged, {}, keyCode(modifier));
    };
    for (int letter = 0; letter < 24; ++letter) {
        add(RawEventType::keyDown, {});
        add(RawEventType::keyUp, {});
    }
    with(leftShift, RawEventType::keyDown);
    with(rightCommand, RawEventType::keyDown);
    with(leftControl, RawEventType::mouseDown);
    return events;
}

/// The keys of the same typing, with repeats, as the filtering source sees them.
std::vector<ShortcutInput> ordinaryInputs() {
    std::vector<ShortcutInput> inputs;
    for (std::uint16_t code = 0; code < 24; ++code) {
        const std::uint64_t flags = code % 6 == 0 ? flagsOf({leftShift}) : 0;
        inputs.push_back({ShortcutInput::Kind::keyDown, code, flags, false, false});
        if (code % 4 == 0) inputs.push_back({ShortcutInput::Kind::keyDown, code, flags, true, false});
        inputs.push_back({ShortcutInput::Kind::keyUp, code, flags, false, false});
    }
    return inputs;
}

template <typename Step>
void measure(benchmark::State& state, std::size_t events, const Step& step) {
    const std::size_t before = bench::allocations();
    for (auto _ : state) step();
    const auto total = static_cast<double>(state.iterations()) * static_cast<double>(events);
    state.counters["allocations"] = static_cast<double>(bench::allocations() - before) / total;
    state.counters["per_event"] =
        benchmark::Counter(total, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void process(benchmark::State& state) {
    Engine engine;
    const std::vector<RawEvent> events = ordinaryEvents();
    const auto& onEvent = engine.rig.source->onEvent;
    measure(state, events.size(), [&] {
        for (const RawEvent& event : events) onEvent(event);
    });
    if (engine.told != 0 || !engine.rig.scheduler.tasks.empty()) state.SkipWithError("something fired");
}

void processShortcut(benchmark::State& state) {
    Engine engine;
    const std::vector<ShortcutInput> inputs = ordinaryInputs();
    const auto& onInput = engine.rig.filter->onInput;
    bool swallowed = false;
    measure(state, inputs.size(), [&] {
        for (const ShortcutInput& input : inputs) swallowed |= onInput(input);
    });
    if (swallowed) state.SkipWithError("something fired");
}

void tapToSwitch(benchmark::State& state) {
    Engine engine;
    measure(state, 1, [&] { engine.switchOnce(); });
    if (engine.told != state.iterations()) state.SkipWithError("a tap was lost");
}

/// Repeats the numbers of each median in lines that a script can read.
class ResultLines : public benchmark::ConsoleReporter {
  public:
    ResultLines() : ConsoleReporter(OO_Tabular) {}

    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.error_occurred) failed = true;
            if (run.aggregate_name != "median") continue;
            const std::string name = "engine: " + run.run_name.function_name;
            const auto budget = budgets_.find(run.run_name.function_name);
            bench::report(name + " median", run.counters.at("per_event").value * 1e9, "ns",
                          budget != budgets_.end() ? bench::Budget(budget->second) : std::nullopt);
            bench::report(name + ", allocations", run.counters.at("allocations").value, "each",
                          budget != budgets_.end() ? bench::Budget(0) : std::nullopt);
        }
    }

    bool failed = false;

  private:
    /// Nanoseconds. What has a budget must not allocate either.
    std::map<std::string, double> budgets_{{eventThatTriggersNothing, 100}, {keyThatTriggersNothing, 150}};
};

template <typename Work>
void measureGrowth(const std::string& name, const Work& work) {
    work(); // what the first round takes is its working memory, not growth
    const long before = bench::memoryOf(getpid()).own;
    work();
    bench::report("engine: growth by " + name, static_cast<double>(bench::memoryOf(getpid()).own - before),
                  "kB", 0.0);
}

void measureLongLife() {
    Engine engine;
    const std::vector<RawEvent> events = ordinaryEvents();
    measureGrowth("1,000,000 key events", [&] {
        for (std::size_t count = 0; count < 1000000; ++count)
            engine.rig.source->onEvent(events[count % events.size()]);
    });
    measureGrowth("10,000 switches", [&] {
        for (int count = 0; count < 10000; ++count) engine.switchOnce();
    });
    measureGrowth("1,000 suspends", [&] {
        for (int count = 0; count < 1000; ++count) {
            engine.rig.engine->handle(SystemEvent::willSleep);
            engine.rig.engine->handle(SystemEvent::didWake);
        }
    });
}

} // namespace
} // namespace hopsel

int main(int argc, char** argv) {
    // Reference counts cost more once a process has had a second thread, as the program has.
    std::thread([] {}).join();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    const std::pair<const char*, void (*)(benchmark::State&)> runs[]{
        {hopsel::eventThatTriggersNothing, hopsel::process},
        {hopsel::keyThatTriggersNothing, hopsel::processShortcut},
        {"tap and switch", hopsel::tapToSwitch},
    };
    for (const auto& [name, run] : runs) {
        benchmark::RegisterBenchmark(name, run)->Repetitions(15)->ReportAggregatesOnly()->MinTime(0.1);
    }
    hopsel::ResultLines reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    hopsel::measureLongLife();
    return reporter.failed ? 1 : 0;
}
