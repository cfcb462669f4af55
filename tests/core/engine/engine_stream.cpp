#include "engine_stream.h"

#include "scenario.h"

#include <map>
#include <stdexcept>

namespace hopsel {

namespace {

using Lines = std::vector<std::string>;

void require(bool holds, const char* what) {
    if (!holds) throw std::logic_error(what);
}

// What honest keys should do to the rules of the scenarios, said without a state machine: a tap is a modifier
// that went down alone and was the last thing of all to go down before it came up.
struct Model {
    Lines expected;                  // what must be told in this step
    Lines queue;                     // what runs on the next turn
    ModifierSet seen;                // the modifiers that are held, as far as the listener told
    std::optional<ModifierKey> last; // went down last, and alone
    double lastAt = 0;
    bool lastWasSecure = false;
    std::map<std::uint16_t, bool> swallowed;

    void forget() { *this = {expected, {}, {}, {}, 0, false, {}}; }

    void keepSeen(ModifierSet held) {
        for (ModifierKey key : seen) held.contains(key) ? void() : seen.remove(key);
    }

    void modifierDown(ModifierKey key, ModifierSet held, double now, bool secure) {
        seen.insert(key);
        keepSeen(held);
        last = seen == ModifierSet{key} ? std::optional(key) : std::nullopt;
        lastAt = now;
        lastWasSecure = secure;
    }

    void modifierUp(ModifierKey key, ModifierSet held, double now, bool secure) {
        const bool isTap = seen.contains(key) && last == key && now - lastAt <= 0.5;
        keepSeen(held);
        if (!isTap || (key != ModifierKey::rightCommand && key != ModifierKey::rightOption)) return;
        const std::string rule = key == ModifierKey::rightCommand ? "cmd" : "opt";
        secure || lastWasSecure ? expected.push_back("suppressed " + rule) : queue.push_back(rule);
    }

    bool swallows(std::uint16_t code, bool isDown, bool isRepeat, ModifierSet held) {
        keepSeen(held);
        if (isDown) last.reset();
        if (isRepeat) return swallowed[code];
        if (!isDown) return std::exchange(swallowed[code], false);
        const bool isSpace = code == 49 && held == ModifierSet{ModifierKey::leftShift};
        const bool fires = isSpace || (code == 96 && held.empty());
        if (fires) queue.emplace_back(isSpace ? "space" : "f5");
        return swallowed[code] = fires;
    }
};

class EngineStream {
  public:
    EngineStream(std::span<const std::uint8_t> bytes, StreamKind kind)
        : bytes_(bytes), isWild_(kind == StreamKind::wild) {
        rig_.engine->setOnEvent([this](const EngineEvent& event) { hear(event); });
        rig_.service->duringSwitch = [this] {
            require(!std::exchange(isSwitching_, true), "one switch at a time");
            for (int left = isWild_ ? 2 : 0; left > 0 && bytes_.size() > 1; --left) step();
            isSwitching_ = false;
        };
    }

    std::size_t run() {
        while (bytes_.size() > 1) step();
        endWithOneTap();
        return rig_.service->switches.size();
    }

  private:
    void step() {
        using enum ModifierKey; // mostly those that rules are about
        static constexpr std::array keys{rightCommand, rightOption, leftShift,   rightCommand,
                                         rightOption,  rightShift,  leftCommand, leftControl};
        static constexpr std::array<std::uint16_t, 4> codes{49, 96, 0, 49};
        const int what = bytes_[0] % 64;
        const std::uint8_t how = bytes_[1];
        bytes_ = bytes_.subspan(2);
        const ModifierKey key = keys[how % 8];
        if (what < 16) { // releases more than it presses, or no key would ever be alone
            toggle(how < 96 || rig_.held.empty() ? key : *rig_.held.begin());
        } else if (what < 26) { // a whole tap: the thing that must not get lost in all this
            for (ModifierKey other : how < 96 ? ModifierSet{} : rig_.held) toggle(other);
            toggle(key);
            rig_.time.advance(how * 0.003);
            toggle(key);
        } else if (what < 40) {
            toggleKey(codes[how % 4], how >= 192);
        } else if (what < 50) {
            if (!isSwitching_) turn();
        } else if (what < 52) {
            model_.last.reset();
            model_.keepSeen(rig_.held);
            rig_.click();
        } else if (what < 54) { // the keyboard has changed, and nobody told
            rig_.held.contains(key) ? rig_.held.remove(key) : rig_.held.insert(key);
        } else if (what < 56) {
            rig_.secureInput->enabled = how % 4 == 0;
        } else if (what == 56) {
            rig_.engine->handle(static_cast<SystemEvent>(how % 6));
        }
        check();
    }

    void toggle(ModifierKey key) {
        ModifierSet held = rig_.held;
        if (held.contains(key)) {
            held.remove(key);
            model_.modifierUp(key, held, rig_.time.now, rig_.secureInput->enabled);
            rig_.release(key);
        } else {
            held.insert(key);
            model_.modifierDown(key, held, rig_.time.now, rig_.secureInput->enabled);
            rig_.press(key);
        }
    }

    void toggleKey(std::uint16_t code, bool repeats) {
        const bool isRepeat = repeats && isDown_[code];
        const bool isDown = isDown_[code] = isRepeat || !isDown_[code];
        const bool expected = model_.swallows(code, isDown, isRepeat, rig_.held);
        const auto kind = isDown ? ShortcutInput::Kind::keyDown : ShortcutInput::Kind::keyUp;
        require(rig_.key(code, kind, isRepeat) == expected || isWild_, "a key is swallowed as the rules say");
    }

    void turn() {
        for (const auto& rule : std::exchange(model_.queue, {})) model_.expected.push_back("ran " + rule);
        rig_.scheduler.runAll();
    }

    void hear(const EngineEvent& event) {
        if (std::holds_alternative<engine_event::Reset>(event)) model_.forget();
        if (const auto* switched = std::get_if<engine_event::Switched>(&event))
            told_.push_back("ran " + switched->ruleId);
        if (const auto* suppressed = std::get_if<engine_event::SwitchSuppressed>(&event))
            told_.push_back("suppressed " + suppressed->ruleId);
    }

    void check() {
        const bool runs = std::holds_alternative<engine_state::Running>(rig_.engine->state());
        const bool filters = rig_.engine->shortcutStatus() == ShortcutStatus::running;
        require(rig_.source->isStarted == runs, "the listener runs exactly while the engine does");
        require(rig_.filter->isStarted == filters, "the filter runs exactly while it is said to");
        require(!filters || (runs && !rig_.filter->shortcuts.empty()), "no filter without need");
        require(rig_.scheduler.tasks.size() <= 1, "at most one turn is asked for");
        const Lines told = std::exchange(told_, {});
        require(std::exchange(model_.expected, {}) == told || isWild_,
                "what happened is what the model says");
    }

    void endWithOneTap() {
        rig_.secureInput->enabled = false;
        for (ModifierKey key : rig_.held) toggle(key);
        turn();
        check();
        const std::size_t before = rig_.service->switches.size();
        toggle(ModifierKey::rightCommand);
        toggle(ModifierKey::rightCommand);
        turn();
        require(rig_.service->switches.size() == before + 1, "with all keys up, one tap switches once");
    }

    std::span<const std::uint8_t> bytes_;
    bool isWild_;
    Scenario scenario_;
    fakes::EngineRig& rig_ = scenario_.rig;
    Model model_;
    Lines told_;
    std::map<std::uint16_t, bool> isDown_; // ordinary keys on the keyboard
    bool isSwitching_ = false;
};

} // namespace

std::size_t runEngineStream(std::span<const std::uint8_t> bytes, StreamKind kind) {
    return EngineStream(bytes, kind).run();
}

} // namespace hopsel
