#include "scenario.h"

#include <functional>
#include <map>
#include <sstream>
#include <stdexcept>

namespace hopsel {

namespace {

using fakes::EngineRig;

using enum ModifierKey;

const std::map<std::string, ModifierKey> modifiers{
    {"rcmd", rightCommand}, {"ropt", rightOption}, {"lshift", leftShift}};

const std::map<std::string, std::uint16_t> keys{{"a", 0}, {"space", 49}, {"f5", 96}};

using remote_apps::Kind;

using enum SystemEvent;

const std::map<std::string, SystemEvent> systemEvents{
    {"sleep", willSleep},       {"wake", didWake},          {"lock", screenLocked},
    {"unlock", screenUnlocked}, {"leave", sessionResigned}, {"return", sessionBecameActive}};

const std::map<std::string, std::function<void(EngineRig&)>> words{
    {"click", [](EngineRig& rig) { rig.click(); }},
    {"caps", [](EngineRig& rig) { rig.changeFlags(capsLockKeyCode); }},
    {"guest", [](EngineRig& rig) { rig.engine->setFrontmostRemoteKind(Kind::guestOS); }},
    {"screen", [](EngineRig& rig) { rig.engine->setRemoteAppFrontmost(true); }},
    {"local", [](EngineRig& rig) { rig.engine->setRemoteAppFrontmost(false); }},
    {"no-guest-key", [](EngineRig& rig) { rig.engine->setGuestKeyEnabled(false); }},
    {"cancel", [](EngineRig& rig) { rig.engine->cancelTriggerCapture(); }},
    {"start", [](EngineRig& rig) { rig.engine->start(); }},
    {"stop", [](EngineRig& rig) { rig.engine->stop(); }},
    {"retry", [](EngineRig& rig) { rig.engine->retryShortcutIfNeeded(); }},
    {"all-rules", [](EngineRig& rig) { rig.engine->apply(Scenario::rules()); }},
    {"tap-rules", [](EngineRig& rig) { rig.engine->apply(Scenario::tapRules()); }},
    {"other-rules", [](EngineRig& rig) { rig.engine->apply(Scenario::otherRules()); }},
    {"listener-blips", [](EngineRig& rig) { rig.source->onDisabled(true); }},
    {"listener-lost", [](EngineRig& rig) { rig.source->onDisabled(false); }},
    {"filter-blips", [](EngineRig& rig) { rig.filter->onDisabled(true); }},
    {"filter-lost", [](EngineRig& rig) { rig.filter->onDisabled(false); }},
    {"slow", [](EngineRig& rig) { rig.service->duringSwitch = [&rig] { rig.time.advance(0.6); }; }},
    {"picks-nothing", [](EngineRig& rig) { rig.service->current.reset(); }},
    {"picks-A", [](EngineRig& rig) { rig.service->current = "A"; }},
    {"catches-up", [](EngineRig& rig) { rig.service->hasCaughtUp = true; }},
    {"refused", [](EngineRig& rig) { rig.service->result = select_result::Failed{-50}; }},
    {"accepted", [](EngineRig& rig) { rig.service->result = select_result::Selected{}; }},
    {"not-found", [](EngineRig& rig) { rig.service->result = select_result::NotFound{}; }},
    {"B-gone", [](EngineRig& rig) { rig.service->available.erase("B"), rig.engine->refreshSources(); }},
    {"none-left", [](EngineRig& rig) { rig.service->available.clear(), rig.engine->refreshSources(); }},
    {"turn", [](EngineRig& rig) { rig.scheduler.runAll(); }},
};

using Text = std::string;
using namespace engine_event;

struct Describe {
    Text operator()(const StateChanged& event) const {
        if (std::holds_alternative<engine_state::Running>(event.state)) return "running";
        const auto* degraded = std::get_if<engine_state::Degraded>(&event.state);
        if (degraded == nullptr) return "stopped";
        return degraded->reason == DegradedReason::tapDisabled ? "degraded: tap" : "degraded: permission";
    }
    Text operator()(const Switched& event) const {
        return event.from.value_or("?") + ">" + event.to + (event.verified ? "" : "?");
    }
    Text operator()(const SwitchFailed& event) const {
        const auto* failed = std::get_if<select_result::Failed>(&event.result);
        return event.ruleId + " failed " + event.to + (failed ? " " + std::to_string(failed->code) : "");
    }
    Text operator()(const SwitchSuppressed& event) const { return "suppressed " + event.ruleId; }
    Text operator()(const RuleSkipped& event) const {
        std::string text = "skipped " + event.ruleId;
        if (std::holds_alternative<skip_reason::RemoteApp>(event.reason)) return text + ": remote";
        const auto* broken = std::get_if<skip_reason::BrokenSource>(&event.reason);
        if (broken == nullptr) return text + ": no guest key";
        text += ": no";
        for (const std::string& id : broken->missing) text += " " + id;
        return text;
    }
    Text operator()(const GuestKeySent& event) const {
        return event.ruleId + " guest " + event.key.storageString();
    }
    Text operator()(const Reset& event) const {
        static constexpr std::array names{"tap",  "sleep",    "wake",   "locked", "unlocked",
                                          "left", "returned", "config", "stopped"};
        return std::string("reset ") + names[static_cast<std::size_t>(event.reason)];
    }
    Text operator()(const ShortcutStatusChanged& event) const {
        static constexpr std::array names{"filter off", "filter on", "no filter"};
        return names[static_cast<std::size_t>(event.status)];
    }
};

} // namespace

Config Scenario::tapRules() {
    using fakes::tapRule;
    Config config;
    config.rules = {tapRule("cmd", rightCommand, "A", "B"), tapRule("opt", rightOption, "A", "C")};
    return config;
}

Config Scenario::rules() {
    Config config = tapRules();
    config.rules.push_back(fakes::shortcutRule("space", {49, {leftShift}}, "A", "B"));
    config.rules.push_back(fakes::shortcutRule("f5", {96, {}}, "B", "C"));
    return config;
}

Config Scenario::otherRules() {
    using namespace fakes;
    Config config;
    config.rules = {tapRule("off", rightCommand, "A", "B"), tapRule("cmd", rightCommand, "C", "B"),
                    tapRule("second", rightCommand, "A", "B"), shortcutRule("f5", {96, {}}, "A", "B"),
                    shortcutRule("second", {96, {}}, "B", "C")};
    config.rules.front().enabled = false;
    return config;
}

Scenario::Scenario() {
    rig.engine->setOnEvent([this](const EngineEvent& event) {
        const auto* changed = std::get_if<engine_event::StateChanged>(&event);
        if (changed && changed->state != rig.engine->state()) add("too early:");
        rig.events.push_back(event);
    });
    rig.engine->apply(rules());
    rig.engine->start();
    rig.events.clear();
}

std::string Scenario::run(std::string_view script) {
    std::istringstream stream{std::string(script)};
    for (std::string word; stream >> word;) {
        perform(word);
        collect();
    }
    rig.scheduler.runAll();
    collect();
    return outcomes_;
}

void Scenario::perform(const std::string& word) {
    const bool isOff = word.front() == '!';
    if (word == "|") {
        outcomes_.clear();
    } else if (word == "capture") {
        beginCapture();
    } else if (word == "capture-two") {
        beginCapture([this] { beginCapture(); });
    } else if (const auto event = systemEvents.find(word); event != systemEvents.end()) {
        rig.engine->handle(event->second);
    } else if (word.size() > 2 && word.substr(word.size() - 2) == "ms") {
        rig.scheduler.runAll(); // what was asked for before the time passes
        rig.time.advance(std::stoi(word) / 1000.0);
        rig.scheduler.runAll();
    } else if (const auto flag = flags_.find(isOff ? word.substr(1) : word); flag != flags_.end()) {
        *flag->second = !isOff;
    } else if (const auto found = words.find(word); found != words.end()) {
        found->second(rig);
    } else if (!performKey(word)) {
        throw std::invalid_argument("no such word: " + word);
    }
}

void Scenario::beginCapture(std::function<void()> andThen) {
    rig.engine->beginTriggerCapture([this, andThen = std::move(andThen)](ModifierKey key) {
        collect();
        add("captured " + std::string(rawValue(key)));
        if (andThen) andThen();
    });
}

bool Scenario::performKey(const std::string& word) {
    if (modifiers.contains(word)) return performKey(word + "+") && performKey(word + "-");
    const std::string name = word.substr(0, word.size() - 1);
    const char what = word.back();
    if (const auto modifier = modifiers.find(name); modifier != modifiers.end()) {
        if (what == '+') rig.press(modifier->second);
        if (what == '-') rig.release(modifier->second);
        if (what == '~') rig.held.remove(modifier->second);
        return what == '+' || what == '-' || what == '~';
    }
    const auto key = keys.find(name);
    if (key == keys.end() || (what != '+' && what != '-' && what != '*')) return false;
    const auto kind = what == '-' ? ShortcutInput::Kind::keyUp : ShortcutInput::Kind::keyDown;
    if (rig.key(key->second, kind, what == '*')) {
        collect();
        add("no " + word);
    }
    return true;
}

void Scenario::collect() {
    for (const EngineEvent& event : rig.events) add(std::visit(Describe{}, event));
    rig.events.clear();
}

} // namespace hopsel
