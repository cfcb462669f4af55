#include "main_job/stage.h"

#include <array>
#include <csignal>
#include <stdexcept>

namespace hopsel::main_job {

using namespace std::chrono_literals;
using namespace session;

namespace {

constexpr std::array<const char*, 2> sourceIDs{"xkb:us", "xkb:ru"};
constexpr auto quietMoment = 120ms;
constexpr auto patience = 5s;

std::string sourceOf(int group) { return sourceIDs.at(static_cast<std::size_t>(group)); }

} // namespace

Stage::Stage(const std::string& executable) {
    setLayouts("us,ru");
    server_.startWindowManager();
    server_.startPanel();
    window_ = std::make_unique<XTestWindow>();
    program_ = std::make_unique<HopselProgram>(executable, twoRules);
    waitForProgram();
}

void Stage::waitForProgram() {
    const Deadline deadline(patience);
    while (!layouts_.waitForGroup(1, 400ms)) {
        if (deadline.hasPassed()) throw std::runtime_error("the program does not react to its trigger");
        keyboard_.tap(key::rightSuper);
    }
    layouts_.lockGroup(0);
    window_->records();
    window_->clear();
}

Observation Stage::observe(const std::function<double(XKeyboard&)>& play, bool expectSwitch) {
    const int before = layouts_.lockedGroup();
    const double posted = play(keyboard_);
    Observation seen;
    seen.verified = layouts_.waitForGroup(1 - before, expectSwitch ? patience : quietMoment);
    seen.milliseconds = (monotonicSeconds() - posted) * 1000;
    seen.before = sourceOf(before);
    seen.after = sourceOf(layouts_.lockedGroup());
    return seen;
}

std::string Stage::typeAcrossTheShortcut() {
    layouts_.lockGroup(0);
    window_->records();
    window_->clear();
    keyboard_.tap(key::a);
    keyboard_.tap(key::b);
    keyboard_.press(key::leftShift);
    keyboard_.tap(key::space);
    keyboard_.release(key::leftShift);
    layouts_.waitForGroup(1, patience);
    keyboard_.tap(key::a);
    keyboard_.tap(key::b);
    keyboard_.tap(key::space);
    keyboard_.tap(key::c);
    window_->waitForKeys(14, patience);
    return window_->typed();
}

void Stage::bringProgramForward() {
    const auto second = program_->startAnother();
    if (second->waitForExit(patience) != 0) throw std::runtime_error("a second copy does not leave");
}

bool Stage::endProgram() {
    program_->process().kill(SIGTERM);
    return program_->process().waitForExit(patience) == 0;
}

} // namespace hopsel::main_job
