#include "main_job/stage.h"

#include "session/waiting.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <stdexcept>

namespace hopsel::main_job {

using namespace std::chrono_literals;
using namespace session;

namespace {

constexpr std::array<const char*, 2> sourceIDs{"xkb:us", "xkb:ru"};
constexpr auto betweenTries = 100ms;
constexpr auto patience =
    30s; // for a machine that is busy with other things; nothing waits that long otherwise

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
    while (!swallowsTheShortcut()) {
        if (deadline.hasPassed()) throw std::runtime_error("the program does not react to its trigger");
        waitReadable(-1, Deadline(betweenTries));
    }
    if (!layouts_.waitForGroup(1, patience)) throw std::runtime_error("the program does not switch");
    layouts_.lockGroup(0);
    window_->records();
    window_->clear();
}

// Keys arrive in order, so that once the letter has, the Space before it has come or was kept back. This has
// no try still under way when it answers, as a tap would that came too early to be heard at once.
bool Stage::swallowsTheShortcut() {
    const auto records = recordsUntilTheLetter(key::leftShift);
    return std::none_of(records.begin(), records.end(),
                        [](const XRecord& record) { return record.code == key::space; });
}

// The combination on the other side is no trigger, but the program has to look at it before the application
// gets it; and it looks at one key after the other. While it looks the keyboard stands still, and a click
// would come before keys that were pressed earlier.
void Stage::waitUntilAllIsLookedAt() { recordsUntilTheLetter(key::rightShift); }

// The letter is typed nowhere else. A number of keys would not do: they could be those of the act before.
XTestWindow::Records Stage::recordsUntilTheLetter(std::uint16_t shift) {
    window_->records();
    window_->clear();
    keyboard_.press(shift);
    keyboard_.tap(key::space);
    keyboard_.release(shift);
    keyboard_.tap(key::x);
    const auto hasCome = [](const XTestWindow::Records& records) {
        return std::any_of(records.begin(), records.end(), [](const XRecord& record) {
            return record.kind == XRecord::Kind::keyRelease && record.code == key::x;
        });
    };
    if (!window_->waitFor(hasCome, patience)) throw std::runtime_error("the program keeps a key back");
    return window_->records();
}

Observation Stage::observe(const std::function<double(XKeyboard&)>& play, bool expectSwitch) {
    const int before = layouts_.lockedGroup();
    const double posted = play(keyboard_);
    Observation seen;
    if (!expectSwitch) waitUntilAllIsLookedAt();
    seen.verified = layouts_.waitForGroup(1 - before, expectSwitch ? patience : 0s);
    seen.milliseconds = (monotonicSeconds() - posted) * 1000;
    if (expectSwitch) waitUntilAllIsLookedAt();
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

void Stage::waitForItsTurn() {
    const auto question = program_->startAnother({"--status"});
    if (question->waitForExit(patience) != 0) throw std::runtime_error("the program does not answer");
}

bool Stage::endProgram() {
    program_->process().kill(SIGTERM);
    return program_->process().waitForExit(patience) == 0;
}

} // namespace hopsel::main_job
