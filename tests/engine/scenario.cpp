#include "scenario.h"

#include <cstdlib>
#include <functional>
#include <map>
#include <sstream>
#include <stdexcept>

namespace hopsel {

namespace {

using fakes::EngineRig;

const std::map<std::string, ModifierKey> modifiers{
    {"lcmd", ModifierKey::leftCommand},  {"rcmd", ModifierKey::rightCommand},
    {"lopt", ModifierKey::leftOption},   {"ropt", ModifierKey::rightOption},
    {"lshift", ModifierKey::leftShift},  {"rshift", ModifierKey::rightShift},
    {"lctrl", ModifierKey::leftControl}, {"rctrl", ModifierKey::rightControl},
};

const std::map<std::string, std::uint16_t> keys{{"a", 0}, {"c", 8}, {"space", 49}, {"f5", 96}};

Config without(Config config, bool shortcuts) {
    std::erase_if(config.rules, [&](const Rule& rule) {
        return std::holds_alternative<trigger::Shortcut>(rule.trigger) == shortcuts;
    });
    return config;
}

using remote_apps::Kind;

const std::map<std::string, std::function<void(EngineRig&)>> words{
    {"click", [](EngineRig& rig) { rig.click(); }},
    {"caps", [](EngineRig& rig) { rig.changeFlags(capsLockKeyCode); }},
    {"sideless", [](EngineRig& rig) { rig.tellsSides = false; }},
    {"synthetic", [](EngineRig& rig) { rig.synthetic = true; }},
    {"user", [](EngineRig& rig) { rig.synthetic = false; }},
    {"turn", [](EngineRig& rig) { rig.scheduler.runAll(); }},
    {"secure", [](EngineRig& rig) { rig.secureInput->enabled = true; }},
    {"plain", [](EngineRig& rig) { rig.secureInput->enabled = false; }},
    {"guest", [](EngineRig& rig) { rig.engine->setFrontmostRemoteKind(Kind::guestOS); }},
    {"screen", [](EngineRig& rig) { rig.engine->setRemoteAppFrontmost(true); }},
    {"local", [](EngineRig& rig) { rig.engine->setRemoteAppFrontmost(false); }},
    {"no-guest-key", [](EngineRig& rig) { rig.engine->setGuestKeyEnabled(false); }},
    {"guest-key-fails", [](EngineRig& rig) { rig.guestKeys->works = false; }},
    {"no-standing-aside", [](EngineRig& rig) { rig.engine->setSkipsLocalSwitchInRemoteApps(false); }},
    {"start", [](EngineRig& rig) { rig.engine->start(); }},
    {"stop", [](EngineRig& rig) { rig.engine->stop(); }},
    {"retry", [](EngineRig& rig) { rig.engine->retryShortcutIfNeeded(); }},
    {"sleep", [](EngineRig& rig) { rig.engine->handle(SystemEvent::willSleep); }},
    {"wake", [](EngineRig& rig) { rig.engine->handle(SystemEvent::didWake); }},
    {"lock", [](EngineRig& rig) { rig.engine->handle(SystemEvent::screenLocked); }},
    {"unlock", [](EngineRig& rig) { rig.engine->handle(SystemEvent::screenUnlocked); }},
    {"leave", [](EngineRig& rig) { rig.engine->handle(SystemEvent::sessionResigned); }},
    {"return", [](EngineRig& rig) { rig.engine->handle(SystemEvent::sessionBecameActive); }},
    {"all-rules", [](EngineRig& rig) { rig.engine->apply(Scenario::rules()); }},
    {"tap-rules", [](EngineRig& rig) { rig.engine->apply(without(Scenario::rules(), true)); }},
    {"shortcut-rules", [](EngineRig& rig) { rig.engine->apply(without(Scenario::rules(), false)); }},
    {"listener-refuses", [](EngineRig& rig) { rig.source->refuses = true; }},
    {"listener-works", [](EngineRig& rig) { rig.source->refuses = false; }},
    {"listener-blips", [](EngineRig& rig) { rig.source->onDisabled(true); }},
    {"listener-lost", [](EngineRig& rig) { rig.source->onDisabled(false); }},
    {"filter-refuses", [](EngineRig& rig) { rig.filter->refuses = true; }},
    {"filter-refuses-change", [](EngineRig& rig) { rig.filter->refusesChange = true; }},
    {"filter-works", [](EngineRig& rig) { rig.filter->refuses = rig.filter->refusesChange = false; }},
    {"filter-blips", [](EngineRig& rig) { rig.filter->onDisabled(true); }},
    {"filter-lost", [](EngineRig& rig) { rig.filter->onDisabled(false); }},
    {"unverified", [](EngineRig& rig) { rig.service->takesEffect = false; }},
    {"verified", [](EngineRig& rig) { rig.service->takesEffect = true; }},
    {"accepted", [](EngineRig& rig) { rig.service->result = select_result::Selected{}; }},
    {"picks-A", [](EngineRig& rig) { rig.service->current = "A"; }},
    {"refused", [](EngineRig& rig) { rig.service->result = select_result::Failed{-50}; }},
    {"B-gone", [](EngineRig& rig) { rig.service->available.erase("B"), rig.engine->refreshSources(); }},
    {"none-left", [](EngineRig& rig) { rig.service->available.clear(), rig.engine->refreshSources(); }},
    {"cancel", [](EngineRig& rig) { rig.engine->cancelTriggerCapture(); }},
};

struct Describe {
    std::string operator()(const engine_event::StateChanged& event) const {
        if (std::holds_alternative<engine_state::Running>(event.state)) return "running";
        const auto* degraded = std::get_if<engine_state::Degraded>(&event.state);
        if (degraded == nullptr) return "stopped";
        return degraded->reason == DegradedReason::tapDisabled ? "degraded: tap" : "degraded: permission";
    }
    std::string operator()(const engine_event::Switched& event) const {
        return event.from.value_or("?") + ">" + event.to + (event.verified ? "" : "?");
    }
    std::string operator()(const engine_event::SwitchFailed& event) const { return "failed " + event.to; }
    std::string operator()(const engine_event::SwitchSuppressed& event) const {
        return "suppressed " + event.ruleId;
    }
    std::string operator()(const engine_event::RuleSkipped& event) const {
        std::string text = "skipped " + event.ruleId;
        if (std::holds_alternative<skip_reason::RemoteApp>(event.reason)) return text + ": remote";
        const auto* broken = std::get_if<skip_reason::BrokenSource>(&event.reason);
        if (broken == nullptr) return text + ": no guest key";
        text += ": no";
        for (const std::string& id : broken->missing) text += " " + id;
        return text;
    }
    std::string operator()(const engine_event::GuestKeySent& event) const {
        return "guest " + event.key.storageString();
    }
    std::string operator()(const engine_event::Reset& event) const {
        static constexpr std::array names{"tap",  "sleep",    "wake",   "locked", "unlocked",
                                          "left", "returned", "config", "stopped"};
        return std::string("reset ") + names[static_cast<std::size_t>(event.reason)];
    }
    std::string operator()(const engine_event::ShortcutStatusChanged& event) const {
        static constexpr std::array names{"filter off", "filter on", "no filter"};
        return names[static_cast<std::size_t>(event.status)];
    }
};

} // namespace

Config Scenario::rules() {
    Config config;
    config.rules = {fakes::tapRule("cmd", ModifierKey::rightCommand, "A", "B"),
                    fakes::tapRule("opt", ModifierKey::rightOption, "A", "C"),
                    fakes::shortcutRule("space", {49, {ModifierKey::leftShift}}, "A", "B"),
                    fakes::shortcutRule("f5", {96, {}}, "B", "C")};
    return config;
}

Scenario::Scenario() {
    rig.engine->apply(rules());
    rig.engine->start();
    rig.events.clear();
}

std::string Scenario::run(std::string_view script) {
    std::istringstream stream{std::string(script)};
    for (std::string word; stream >> word;) {
        perform(word);
        collect();
        if (word == "|") outcomes_.clear();
    }
    perform("turn");
    collect();
    return outcomes_;
}

void Scenario::perform(const std::string& word) {
    if (word == "|") return;
    if (word == "capture") {
        rig.engine->beginTriggerCapture([this](ModifierKey key) {
            collect();
            outcomes_ += (outcomes_.empty() ? "captured " : ", captured ") + std::string(rawValue(key));
        });
    } else if (word.size() > 2 && word.substr(word.size() - 2) == "ms") {
        rig.scheduler.runAll(); // what was asked for before the time passes
        rig.time.advance(std::atoi(word.c_str()) / 1000.0);
        rig.scheduler.runAll();
    } else if (const auto found = words.find(word); found != words.end()) {
        found->second(rig);
    } else if (!performKey(word)) {
        throw std::invalid_argument("no such word: " + word);
    }
}

bool Scenario::performKey(const std::string& word) {
    const std::string name = word.substr(0, word.size() - 1);
    const char what = word.back();
    if (const auto modifier = modifiers.find(name); modifier != modifiers.end()) {
        if (what == '+') rig.press(modifier->second);
        if (what == '-') rig.release(modifier->second);
        if (what == '~') rig.held.remove(modifier->second);
        return true;
    }
    const auto key = keys.find(name);
    if (key == keys.end()) return false;
    const auto kind = what == '-' ? ShortcutInput::Kind::keyUp : ShortcutInput::Kind::keyDown;
    if (rig.key(key->second, kind, what == '*')) {
        collect();
        outcomes_ += (outcomes_.empty() ? "no " : ", no ") + word;
    }
    return true;
}

void Scenario::collect() {
    for (const EngineEvent& event : rig.events) {
        outcomes_ += (outcomes_.empty() ? "" : ", ") + std::visit(Describe{}, event);
    }
    rig.events.clear();
}

} // namespace hopsel
