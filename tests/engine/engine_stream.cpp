#include "engine_stream.h"

#include "scenario.h"

#include <map>
#include <stdexcept>

namespace hopsel {

namespace {

void require(bool holds, const char* what) {
    if (!holds) throw std::logic_error(what);
}

// What honest keys should do to the rules of the scenarios, said without a state machine: a tap is a modifier
// that went down alone and was the last thing of all to go down before it came up.
struct Model {
    std::vector<std::string> expected; // what must be told in this step
    std::vector<std::string> queue;    // what runs on the next turn
    ModifierSet seen;                  // the modifiers that are held, as far as the listener told
    std::optional<ModifierKey> last;   // went down last; none: a key or a button
    double lastAt = 0;
    bool lastWasAlone = false;
    bool lastWasSecure = false;
    std::map<std::uint16_t, bool> swallowed;

    void forget() { *this = {expected, {}, {}, {}, 0, false, false, {}}; }

    void keepSeen(ModifierSet held) {
        for (ModifierKey key : seen) {
            if (!held.contains(key)) seen.remove(key);
        }
    }

    void down(std::optional<ModifierKey> key, ModifierSet held, double now, bool secure) {
        if (key) seen.insert(*key);
        keepSeen(held);
        last = key;
        lastAt = now;
        lastWasAlone = key && seen == ModifierSet{*key};
        lastWasSecure = secure;
    }

    void modifierUp(ModifierKey key, ModifierSet held, double now, bool secure) {
        const bool wasSeen = seen.contains(key);
        keepSeen(held);
        const bool hasRule = key == ModifierKey::rightCommand || key == ModifierKey::rightOption;
        if (!wasSeen || !hasRule || last != key || !lastWasAlone || now - lastAt > 0.5) return;
        const std::string rule = key == ModifierKey::rightCommand ? "cmd" : "opt";
        const bool suppressed = secure || lastWasSecure;
        suppressed ? expected.push_back("suppressed " + rule) : queue.push_back(rule);
    }

    bool swallows(std::uint16_t code, bool isDown, bool isRepeat, ModifierSet held) {
        if (isRepeat) return swallowed[code];
        if (!isDown) return std::exchange(swallowed[code], false);
        const bool isSpace = code == 49 && held == ModifierSet{ModifierKey::leftShift};
        const bool isF5 = code == 96 && held.empty();
        if (isSpace || isF5) queue.emplace_back(isSpace ? "space" : "f5");
        return swallowed[code] = isSpace || isF5;
    }
};

class EngineStream {
  public:
    EngineStream(std::span<const std::uint8_t> bytes, StreamKind kind)
        : bytes_(bytes), isWild_(kind == StreamKind::wild) {
        rig_.engine->setOnEvent([this](const EngineEvent& event) { hear(event); });
        rig_.service->duringSwitch = [this] {
            require(!isSwitching_, "one switch at a time");
            isSwitching_ = true;
            for (int left = isWild_ ? 2 : 0; left > 0 && !bytes_.empty(); --left) step();
            isSwitching_ = false;
        };
        rig_.engine->apply(Scenario::rules());
        rig_.engine->start();
    }

    std::size_t run() {
        while (!bytes_.empty()) step();
        endWithOneTap();
        return rig_.service->switches.size();
    }

  private:
    std::uint8_t next() {
        if (bytes_.empty()) return 0;
        const std::uint8_t byte = bytes_.front();
        bytes_ = bytes_.subspan(1);
        return byte;
    }

    void step() {
        using enum ModifierKey; // mostly those that rules are about
        static constexpr std::array<ModifierKey, 8> keys{rightCommand, rightOption, leftShift,   rightCommand,
                                                         rightOption,  rightShift,  leftCommand, leftControl};
        static constexpr std::array<std::uint16_t, 4> codes{49, 96, 0, 49};
        const std::uint8_t what = next() % 64;
        const std::uint8_t how = next();
        const ModifierKey key = keys[how % 8];
        if (what < 16) { // releases more than it presses, or no key would ever be alone
            toggle(how < 96 || rig_.held.empty() ? key : *rig_.held.begin());
        } else if (what < 26) { // a whole tap: the thing that must not get lost in all this
            if (how >= 96) releaseAll();
            toggle(key);
            const int tenths = how / 32;
            rig_.time.advance(tenths * 0.1);
            toggle(key);
        } else if (what < 40) {
            toggleKey(codes[how % 4], how >= 192);
        } else if (what < 47) {
            if (!isSwitching_) turn();
        } else if (what < 50) {
            rig_.time.advance(how * 0.01);
        } else if (what < 52) {
            model_.down({}, rig_.held, rig_.time.now, false);
            rig_.click();
        } else if (what < 54) { // the keyboard has changed, and nobody told
            rig_.held.contains(key) ? rig_.held.remove(key) : rig_.held.insert(key);
        } else if (what < 56) {
            rig_.secureInput->enabled = how % 4 == 0;
        } else if (what == 56) {
            rig_.engine->handle(static_cast<SystemEvent>(how % 6));
        } else if (isWild_) {
            disturb(what, how);
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
            model_.down(key, held, rig_.time.now, rig_.secureInput->enabled);
            rig_.press(key);
        }
    }

    void releaseAll() {
        for (ModifierKey key : rig_.held) toggle(key);
    }

    void toggleKey(std::uint16_t code, bool repeats) {
        const bool isRepeat = repeats && isDown_[code];
        const bool isDown = isRepeat || !isDown_[code];
        isDown_[code] = isDown;
        const bool expected = model_.swallows(code, isDown, isRepeat, rig_.held);
        isDown ? model_.down({}, rig_.held, rig_.time.now, false) : model_.keepSeen(rig_.held);
        const bool isLookedAt = !rig_.engine->isCapturing() && !rig_.synthetic;
        const bool swallowed =
            rig_.key(code, isDown ? ShortcutInput::Kind::keyDown : ShortcutInput::Kind::keyUp, isRepeat);
        require(isWild_ || swallowed == expected, "a key is swallowed as the rules say");
        const bool isFirst = isDown && !isRepeat;
        require(isFirst || !swallowed || pressWasSwallowed_[code],
                "a key that passed is not swallowed later");
        if (isFirst && isLookedAt) pressWasSwallowed_[code] = swallowed;
    }

    void turn() {
        for (const std::string& rule : std::exchange(model_.queue, {}))
            model_.expected.push_back("ran " + rule);
        rig_.scheduler.runAll();
    }

    void disturb(std::uint8_t what, std::uint8_t how) {
        EngineCoordinator& engine = *rig_.engine;
        if (what == 57) {
            engine.setFrontmostRemoteKind(how < 192 ? std::nullopt
                                                    : std::optional(remote_apps::Kind(how % 2)));
        } else if (what == 58) {
            Config config = Scenario::rules();
            std::erase_if(config.rules, [&](const Rule& rule) { return rule.trigger.index() == how % 4U; });
            engine.apply(config);
        } else if (what == 59) {
            engine.beginTriggerCapture(how * 0.01, [&, again = how % 8 == 0](ModifierKey) {
                if (again) engine.beginTriggerCapture([](ModifierKey) {});
            });
        } else if (what == 60) {
            engine.cancelTriggerCapture();
        } else if (what == 61) {
            rig_.source->refuses = (how & 1) != 0;
            rig_.filter->refuses = rig_.filter->refusesChange = (how & 2) != 0;
            rig_.service->takesEffect = (how & 4) != 0;
            rig_.service->result =
                (how & 8) != 0 ? SelectResult{select_result::Failed{-1}} : select_result::Selected{};
            (how & 16) != 0 ? rig_.source->onDisabled((how & 32) != 0)
                            : rig_.filter->onDisabled((how & 32) != 0);
        } else if (what == 62) {
            how < 64 ? engine.stop() : engine.start();
            engine.retryShortcutIfNeeded();
        } else {
            rig_.synthetic = how % 8 == 1;
            rig_.tellsSides = how % 8 != 2;
            const auto type = static_cast<RawEventType>(how / 8 % 4);
            if (how % 8 == 3)
                rig_.source->onEvent({type, next(), next() * 0x1003ULL, rig_.time.now - how, false});
        }
    }

    void hear(const EngineEvent& event) {
        if (std::holds_alternative<engine_event::Reset>(event)) model_.forget();
        if (const auto* switched = std::get_if<engine_event::Switched>(&event))
            told_.push_back("ran " + switched->ruleId);
        if (const auto* suppressed = std::get_if<engine_event::SwitchSuppressed>(&event)) {
            told_.push_back("suppressed " + suppressed->ruleId);
        }
    }

    void check() {
        const bool runs = std::holds_alternative<engine_state::Running>(rig_.engine->state());
        const bool filters = rig_.engine->shortcutStatus() == ShortcutStatus::running;
        require(rig_.source->isStarted == runs, "the listener runs exactly while the engine does");
        require(rig_.filter->isStarted == filters, "the filter runs exactly while it is said to");
        require(!filters || (runs && !rig_.filter->shortcuts.empty()), "no filter without need");
        require(rig_.scheduler.tasks.size() <= 1, "at most one turn is asked for");
        require(isWild_ || told_ == model_.expected, "what happened is what the model says");
        told_.clear();
        model_.expected.clear();
    }

    void endWithOneTap() {
        rig_.tellsSides = true;
        rig_.synthetic = rig_.source->refuses = rig_.secureInput->enabled = false;
        releaseAll();
        for (const auto& [code, isDown] : isDown_) {
            if (isDown) toggleKey(code, false);
        }
        turn();
        check();
        if (isWild_) { // what only the user could put right
            rig_.engine->cancelTriggerCapture();
            rig_.engine->setFrontmostRemoteKind(std::nullopt);
            rig_.engine->apply(Scenario::rules());
            rig_.engine->start();
        }
        const std::size_t before = rig_.service->switches.size();
        toggle(ModifierKey::rightCommand);
        toggle(ModifierKey::rightCommand);
        turn();
        require(rig_.service->switches.size() == before + 1, "with all keys up, one tap switches once");
    }

    std::span<const std::uint8_t> bytes_;
    bool isWild_;
    fakes::EngineRig rig_;
    Model model_;
    std::vector<std::string> told_;
    std::map<std::uint16_t, bool> isDown_; // ordinary keys on the keyboard
    std::map<std::uint16_t, bool> pressWasSwallowed_;
    bool isSwitching_ = false;
};

} // namespace

std::size_t runEngineStream(std::span<const std::uint8_t> bytes, StreamKind kind) {
    return EngineStream(bytes, kind).run();
}

} // namespace hopsel
