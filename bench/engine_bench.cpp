// What the engine costs per event that triggers nothing, per switch, and over a long life. Events take the
// way they take in the program: through the callback that the engine installed in its source.
//
// Run it alone on a quiet machine, in a RelWithDebInfo or Release build. Times are medians over the
// repetitions.
#include "support/fakes/engine_rig.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <new>
#include <thread>

namespace {

std::size_t allocations = 0;

} // namespace

// All replaceable forms that the standard library falls back to end in these two.
void* operator new(std::size_t size) {
    ++allocations;
    if (void* memory = std::malloc(size == 0 ? 1 : size)) return memory;
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace hopsel {
namespace {

using enum ModifierKey;

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
    const std::size_t before = allocations;
    for (auto _ : state) step();
    const auto total = static_cast<double>(state.iterations()) * static_cast<double>(events);
    state.counters["allocations"] = static_cast<double>(allocations - before) / total;
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
            const std::string& name = run.run_name.function_name;
            std::printf("RESULT %s %.1f ns\n", name.c_str(), run.counters.at("per_event").value * 1e9);
            std::printf("RESULT %s_allocations %.3f per_event\n", name.c_str(),
                        run.counters.at("allocations").value);
        }
    }

    bool failed = false;
};

long kibibytes(const char* file, const std::string& wanted) {
    std::ifstream lines(file);
    for (std::string name; lines >> name;) {
        long value = 0;
        if (name == wanted && lines >> value) return value;
    }
    return 0;
}

template <typename Work>
void measureGrowth(const char* name, const Work& work) {
    const auto pss = [] { return kibibytes("/proc/self/smaps_rollup", "Pss:"); };
    const auto rss = [] { return kibibytes("/proc/self/status", "VmRSS:"); };
    work(); // what the first round takes is its working memory, not growth
    const long pssBefore = pss();
    const long rssBefore = rss();
    work();
    std::printf("RESULT %s_rss %ld KiB\nRESULT %s_rss_growth %ld KiB\n", name, rss(), name,
                rss() - rssBefore);
    std::printf("RESULT %s_pss %ld KiB\nRESULT %s_pss_growth %ld KiB\n", name, pss(), name,
                pss() - pssBefore);
}

void measureLongLife() {
    Engine engine;
    const std::vector<RawEvent> events = ordinaryEvents();
    measureGrowth("events_1000000", [&] {
        for (std::size_t count = 0; count < 1000000; ++count)
            engine.rig.source->onEvent(events[count % events.size()]);
    });
    measureGrowth("switches_10000", [&] {
        for (int count = 0; count < 10000; ++count) engine.switchOnce();
    });
    measureGrowth("suspends_1000", [&] {
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
        {"engine_process", hopsel::process},
        {"engine_process_shortcut", hopsel::processShortcut},
        {"engine_tap_to_switch", hopsel::tapToSwitch},
    };
    for (const auto& [name, run] : runs) {
        benchmark::RegisterBenchmark(name, run)->Repetitions(15)->ReportAggregatesOnly()->MinTime(0.1);
    }
    hopsel::ResultLines reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    hopsel::measureLongLife();
    return reporter.failed ? 1 : 0;
}
