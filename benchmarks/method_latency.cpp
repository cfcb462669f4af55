#include "benchmarks/method_latency.h"

#include "benchmarks/idle.h"
#include "benchmarks/measurement.h"
#include "session/child_process.h"
#include "session/temporary_folder.h"
#include "session/x_keyboard.h"

#include <algorithm>
#include <memory>
#include <poll.h>
#include <stdexcept>

namespace hopsel::bench {

using namespace session;

namespace {

constexpr int rounds = 10;
constexpr int samplesPerRound = 20;
/// Longer than anything that a switch leaves to be done.
constexpr int quietMoment = 30; // ms
constexpr auto patience = std::chrono::seconds(10);

std::string settings(const Framework& framework) {
    const auto source = [&](const QString& method) {
        return R"({"displayName": "-", "sourceId": ")" + framework.prefix + method.toStdString() + "\"}";
    };
    return R"({"schemaVersion": 2, "rules": [{"id": "2E0B5D0C-7B1E-4C1B-9B52-6E1F0E3B8D41", "enabled": true,
        "trigger": {"type": "modifier_tap", "key": "rightCommand"}, "action": {"type": "toggle_input_source",
        "sourceA": )" +
           source(framework.english) + ", \"sourceB\": " + source(framework.korean) + "}}]}";
}

/// One way to switch. `toggle` gets the method to switch to, and answers when it began.
struct Contestant {
    std::string name;
    std::function<std::shared_ptr<ChildProcess>()> start;
    std::function<double(const QString& method)> toggle;
    Samples samples;
};

class Contest {
  public:
    Contest(const Framework& framework, MethodWatch& watch, const std::string& hopsel)
        : framework_(framework), watch_(watch) {
        hopsel_.program = hopsel;
        hopsel_.environment = {{"HOPSEL_CONFIG", folder_.write("rules.json", settings(framework)).string()}};
        tool_.program = framework.tool.front();
        tool_.arguments.assign(framework.tool.begin() + 1, framework.tool.end());
        tool_.arguments.emplace_back();
    }

    void measure() {
        for (int i = 0; i < 2; ++i)
            repeatUntilSwitched("its own call", [this](const QString& method) { watch_.select(method); });
        Contestant contestants[] = {
            {"its own call", nullptr, [this](const QString& method) { return call(method); }, {}},
            {"its own trigger key", nullptr, [this](const QString&) { return pressOwnTrigger(); }, {}},
            {tool_.program + ", its tool",
             nullptr,
             [this](const QString& method) { return runTool(method); },
             {}},
            {"hopsel", [this] { return startHopsel(); }, [this](const QString&) { return tap(); }, {}},
        };
        for (int round = 0; round < rounds; ++round) {
            for (Contestant& contestant : contestants) playRound(contestant);
        }
        const std::string title = framework_.name + ", trigger key to method";
        for (const Contestant& contestant : contestants)
            report(title + ", " + contestant.name, contestant.samples);
        const double own = contestants[3].samples.median();
        report(title + ", hopsel behind its own call median", own - contestants[0].samples.median(), "ms",
               0.3);
        reportRatio(title + ", hopsel to its own call median", own, contestants[0].samples.median());
        reportRatio(title + ", hopsel to its own trigger key median", own, contestants[1].samples.median(),
                    1.0);
        reportRatio(title + ", hopsel to its tool median", own, contestants[2].samples.median(), 1.0);
        reportIdle(framework_.name + ", idle", startHopsel()->id(), idleWakeUps);
    }

  private:
    const QString& other() const {
        return watch_.current() == framework_.korean ? framework_.english : framework_.korean;
    }

    void playRound(Contestant& contestant) {
        const auto program = contestant.start ? contestant.start() : nullptr;
        for (int i = 0; i < samplesPerRound; ++i) {
            const QString method = other();
            const double began = contestant.toggle(method);
            const auto heard = watch_.waitFor(method, patience);
            if (!heard) throw std::runtime_error(framework_.name + ": no switch by " + contestant.name);
            contestant.samples.add((*heard - began) * 1000);
            running_.reset();
            poll(nullptr, 0, quietMoment);
        }
    }

    /// At a key's release as well, so that the daemon has the same to do: the text field asks it about the
    /// key at the same time.
    double call(const QString& method) {
        const double released = tap();
        watch_.select(method);
        return released;
    }

    double runTool(const QString& method) {
        tool_.arguments.back() = method.toStdString();
        const double began = monotonicSeconds();
        running_ = std::make_unique<ChildProcess>(tool_);
        return began;
    }

    double pressOwnTrigger() {
        const auto& codes = framework_.triggerKey;
        double pressed = 0;
        for (const std::uint16_t code : codes) pressed = keyboard_.press(code);
        if (!framework_.switchesOnPress) poll(nullptr, 0, quietMoment);
        std::for_each(codes.rbegin(), codes.rend() - 1,
                      [this](std::uint16_t code) { keyboard_.release(code); });
        const double released = keyboard_.release(codes.front());
        return framework_.switchesOnPress ? pressed : released;
    }

    double tap() {
        keyboard_.press(key::rightSuper);
        poll(nullptr, 0, 3);
        return keyboard_.release(key::rightSuper);
    }

    /// Again and again: a daemon or a program that has just started does not switch yet.
    void repeatUntilSwitched(const char* name, const std::function<void(const QString& method)>& toggle) {
        const QString method = other();
        const Deadline deadline(patience);
        do {
            if (deadline.hasPassed()) throw std::runtime_error(framework_.name + ": no switch by " + name);
            toggle(method);
        } while (!watch_.waitFor(method, std::chrono::milliseconds(300)));
    }

    std::shared_ptr<ChildProcess> startHopsel() {
        auto program = std::make_shared<ChildProcess>(hopsel_);
        repeatUntilSwitched("hopsel", [this](const QString&) { tap(); });
        return program;
    }

    Framework framework_;
    MethodWatch& watch_;
    TemporaryFolder folder_;
    ChildProcess::Options hopsel_;
    ChildProcess::Options tool_;
    std::unique_ptr<ChildProcess> running_; ///< the tool
    XKeyboard keyboard_;
};

} // namespace

void measureMethodLatency(const Framework& framework, MethodWatch& watch, const std::string& hopsel) {
    Contest(framework, watch, hopsel).measure();
}

} // namespace hopsel::bench
