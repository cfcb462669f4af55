#include "main_job/acts.h"

#include "session/waiting.h"

namespace hopsel::main_job {

using namespace session;

namespace {

/// Longer than any tap: waits for nothing on purpose.
void holdFor(std::chrono::milliseconds time) {
    const Deadline deadline(time);
    while (!deadline.hasPassed()) waitReadable(-1, deadline);
}

Act withRightSuper(const std::string& what, const std::function<void(XKeyboard&)>& meanwhile) {
    return {"right Super " + what, false, [meanwhile](XKeyboard& keyboard) {
                keyboard.press(key::rightSuper);
                meanwhile(keyboard);
                return keyboard.release(key::rightSuper);
            }};
}

Act combination(const std::string& name, bool switches, std::uint16_t modifier) {
    return {name, switches, [modifier](XKeyboard& keyboard) {
                keyboard.press(modifier);
                const double posted = keyboard.press(key::space);
                keyboard.release(key::space);
                keyboard.release(modifier);
                return posted;
            }};
}

} // namespace

std::vector<Act> acts() {
    const auto tap = [](XKeyboard& keyboard) { return keyboard.tap(key::rightSuper); };
    return {
        {"right Super tapped", true, tap},
        {"right Super tapped again", true, tap},
        combination("left Shift+Space", true, key::leftShift),
        combination("left Shift+Space again", true, key::leftShift),
        withRightSuper("with a letter", [](XKeyboard& keyboard) { keyboard.tap(key::c); }),
        withRightSuper("with a click", [](XKeyboard& keyboard) { keyboard.button(1); }),
        withRightSuper("with a scroll step",
                       [](XKeyboard& keyboard) { keyboard.scroll(XKeyboard::Scroll::down); }),
        withRightSuper("with another modifier", [](XKeyboard& keyboard) { keyboard.tap(key::leftControl); }),
        withRightSuper("held for 0.6 s", [](XKeyboard&) { holdFor(std::chrono::milliseconds(600)); }),
        {"left Super tapped", false, [](XKeyboard& keyboard) { return keyboard.tap(key::leftSuper); }},
        combination("right Shift+Space", false, key::rightShift),
        {"right Super tapped at the end", true, tap},
    };
}

} // namespace hopsel::main_job
