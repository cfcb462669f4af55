#include "benchmarks/benchmarks.h"
#include "benchmarks/measurement.h"
#include "benchmarks/trigger_key.h"
#include "session/x_keyboard.h"
#include "session/x_window.h"

#include <algorithm>
#include <stdexcept>

namespace hopsel::bench {

using namespace session;

namespace {

constexpr int rounds = 5;
constexpr int samplesPerRound = 200;

/// Milliseconds from posting the key's press until the application has it.
double pressDelay(XKeyboard& keyboard, XTestWindow& application, std::uint16_t code) {
    application.clear();
    const double posted = keyboard.post({{code, true}});
    const bool arrived = application.waitForKeys(1);
    if (!arrived) throw std::runtime_error("a key that is to be passed did not reach the application");
    // Before it the application may have been told that a grab came and went.
    const auto& records = application.records();
    const auto received = std::find_if(records.begin(), records.end(), [](const XRecord& record) {
                              return record.kind == XRecord::Kind::keyPress;
                          })->receivedAt;
    keyboard.post({{code, false}});
    application.waitForKeys(2);
    return (received - posted) * 1000;
}

struct Delays {
    Samples seen;   ///< right Shift+Space, where the rule has left Shift: the filter must look, and pass it
    Samples unseen; ///< a letter
};

void playRound(Delays& delays) {
    XTestWindow application;
    XKeyboard keyboard;
    keyboard.press(key::rightShift);
    for (int i = 0; i < samplesPerRound; ++i) delays.seen.add(pressDelay(keyboard, application, key::space));
    keyboard.release(key::rightShift);
    for (int i = 0; i < samplesPerRound; ++i) delays.unseen.add(pressDelay(keyboard, application, key::a));
}

} // namespace

void measurePassedKeys(const Programs& programs) {
    Delays without;
    Delays with;
    for (int round = 0; round < rounds; ++round) {
        playRound(without);
        const Running program = hopselSwitcher(programs).start();
        TriggerKey().tapUntilSwitched();
        playRound(with);
    }
    report("key that the filter passes, without hopsel", without.seen);
    report("key that the filter passes, with hopsel", with.seen, 0.3);
    report("key that the filter passes, hopsel adds median", with.seen.median() - without.seen.median(),
           "ms");
    report("key that the filter never sees, without hopsel", without.unseen);
    report("key that the filter never sees, with hopsel", with.unseen);
    report("key that the filter never sees, hopsel adds median",
           with.unseen.median() - without.unseen.median(), "ms");
}

} // namespace hopsel::bench
