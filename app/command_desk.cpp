#include "app/command_desk.h"

#include "core/base/overloaded.h"
#include "model/menu/menu_builder.h"
#include "model/texts/l10n.h"

#include <algorithm>
#include <charconv>

namespace hopsel {

namespace {

/// Fixed names for programs that read the status.
const char* word(StatusLine status) {
    switch (status) {
    case StatusLine::ok: return "ok";
    case StatusLine::paused: return "paused";
    case StatusLine::starting: return "starting";
    case StatusLine::permissionMissing: return "not-listening";
    case StatusLine::tapsUnheard: return "only-combinations";
    case StatusLine::tapDisabled: return "interrupted";
    case StatusLine::accessibilityMissing: return "combination-taken";
    case StatusLine::configProblem: return "settings-problem";
    case StatusLine::noRules: return "no-rules";
    case StatusLine::nothingToSwitch: return "nothing-to-switch";
    }
    return "";
}

std::string onOneLine(std::string text) {
    std::replace_if(
        text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20; }, ' ');
    return text;
}

const action::Toggle& toggleOf(const Rule& rule) { return std::get<action::Toggle>(rule.action); }

} // namespace

CommandDesk::CommandDesk(AppModel& model) : model_(model) {
    model_.onEngineEvent = [this](const EngineEvent& event) { hear(event); };
}

void CommandDesk::ask(const std::string& request, const Answer& answer) {
    const Json asked = Json::parse(request, nullptr, false);
    const auto string = [&](const char* name) {
        const auto found = asked.is_object() ? asked.find(name) : asked.end();
        return asked.is_object() && found != asked.end() && found->is_string() ? found->get<std::string>()
                                                                               : std::string();
    };
    const std::string command = string("command");
    const std::string argument = string("argument");
    if (command == "status") return reply(answer, ExitCode::done, statusText(), status());
    if (command == "list-sources") return reply(answer, ExitCode::done, sourcesText(), sources());
    if (command == "select") return select(argument, answer);
    if (command == "toggle") return toggle(argument, answer);
    if (command == "pause" || command == "resume") {
        model_.setEngineEnabled(command == "resume");
        return reply(answer, ExitCode::done, statusText(), status());
    }
    if (command == "settings" && onSettings) {
        onSettings();
        return reply(answer, ExitCode::done, {});
    }
    if (command == "quit" && onQuit) {
        reply(answer, ExitCode::done, {});
        return onQuit();
    }
    reply(answer, ExitCode::usage, "the running copy does not know this command");
}

CommandDesk::Json CommandDesk::status() const {
    Json rules = Json::array();
    for (const Rule& rule : model_.rules()) {
        const auto taken = swallowedShortcut(rule.trigger);
        rules.push_back({{"id", rule.id},
                         {"trigger", l10n::triggerName(rule.trigger)},
                         {"enabled", rule.enabled},
                         {"sources", {toggleOf(rule).sourceA.sourceId, toggleOf(rule).sourceB.sourceId}},
                         {"taken", taken && model_.takenShortcuts().count(*taken) > 0}});
    }
    Json current = nullptr;
    if (const auto& id = model_.currentSourceID()) current = {{"id", *id}, {"name", model_.sourceName(*id)}};
    return {{"version", model_.appVersion()},
            {"status", word(model_.statusLine())},
            {"enabled", model_.engineEnabled()},
            {"current", current},
            {"rules", rules}};
}

std::string CommandDesk::statusText() const {
    std::string text = menu_builder::statusTitle(model_.statusLine(), model_.takenCombinations()) + "\n";
    text += onOneLine(model_.currentSourceName().value_or("—")) + "\n";
    int number = 0;
    for (const Rule& rule : model_.rules())
        text += std::to_string(++number) + (rule.enabled ? ". " : ". (–) ") +
                onOneLine(model_.ruleLine(rule)) + "\n";
    return text;
}

CommandDesk::Json CommandDesk::sources() const {
    Json all = Json::array();
    for (const InputSourceInfo& source : model_.sources())
        all.push_back({{"id", source.id},
                       {"name", source.name},
                       {"selectable", source.isSelectCapable},
                       {"current", model_.currentSourceID() == source.id}});
    return all;
}

std::string CommandDesk::sourcesText() const {
    std::string text;
    for (const InputSourceInfo& source : model_.sources())
        text += std::string(model_.currentSourceID() == source.id ? "* " : "  ") + onOneLine(source.id) +
                "\t" + onOneLine(source.name) + "\n";
    return text;
}

const Rule* CommandDesk::ruleNamed(const std::string& argument) const {
    const std::vector<Rule>& rules = model_.rules();
    std::size_t number = 0;
    const char* const end = argument.data() + argument.size();
    const auto [read, error] = std::from_chars(argument.data(), end, number);
    if (error == std::errc() && read == end && number >= 1 && number <= rules.size())
        return &rules[number - 1];
    const auto found = std::find_if(rules.begin(), rules.end(), [&](const Rule& rule) {
        return argument.empty() ? rule.enabled : rule.id == argument;
    });
    return found != rules.end() ? &*found : nullptr;
}

void CommandDesk::select(const std::string& id, const Answer& answer) {
    const auto& sources = model_.sources();
    if (std::none_of(sources.begin(), sources.end(), [&](const InputSourceInfo& source) {
            return source.id == id && source.isSelectCapable;
        }))
        return reply(answer, ExitCode::failed,
                     "no input source that can be selected is called \"" + onOneLine(id) + "\"");
    switchTo({id, id}, {id, id}, answer);
}

void CommandDesk::toggle(const std::string& argument, const Answer& answer) {
    const Rule* rule = ruleNamed(argument);
    if (rule == nullptr)
        return reply(answer, ExitCode::failed,
                     argument.empty() ? "no rule is on" : "there is no rule \"" + onOneLine(argument) + "\"");
    switchTo(toggleOf(*rule).sourceA, toggleOf(*rule).sourceB, answer);
}

void CommandDesk::switchTo(const InputSourceRef& a, const InputSourceRef& b, const Answer& answer) {
    const std::string name = "command-" + std::to_string(++lastNumber_);
    waiting_[name] = answer; // before it is asked for: it may end at once
    if (!model_.requestSwitch(name, a, b))
        return finish(name, ExitCode::failed, menu_builder::statusTitle(model_.statusLine()));
    QTimer::singleShot(deadline_, this, [this, name] {
        finish(name, ExitCode::noAnswer, "the switch has not ended in time");
    });
}

void CommandDesk::hear(const EngineEvent& event) {
    std::visit(
        Overloaded{
            [this](const engine_event::Switched& switched) {
                finish(switched.ruleId, ExitCode::done, model_.sourceName(switched.to));
            },
            [this](const engine_event::SwitchFailed& failed) {
                const auto* code = std::get_if<select_result::Failed>(&failed.result);
                finish(failed.ruleId, ExitCode::failed,
                       "the switch to " + failed.to + " failed" +
                           (code != nullptr ? " (" + std::to_string(code->code) + ")" : std::string()));
            },
            [this](const engine_event::RuleSkipped& skipped) {
                const bool isMissing = std::holds_alternative<skip_reason::BrokenSource>(skipped.reason);
                finish(skipped.ruleId, ExitCode::failed,
                       isMissing ? "an input source of the rule is missing" : "another computer is in front");
            },
            [this](const engine_event::GuestKeySent& sent) {
                finish(sent.ruleId, ExitCode::done, l10n::shortcutName(sent.key));
            },
            [](const auto&) {}, // of no switch
        },
        event);
}

void CommandDesk::finish(const std::string& name, ExitCode code, const std::string& text) {
    const auto found = waiting_.find(name);
    if (found == waiting_.end()) return;
    const Answer answer = found->second;
    waiting_.erase(found);
    reply(answer, code, text, code == ExitCode::done ? status() : Json());
}

void CommandDesk::reply(const Answer& answer, ExitCode code, const std::string& text, Json data) {
    const Json whole{{"exit", static_cast<int>(code)}, {"text", text}, {"data", std::move(data)}};
    answer(whole.dump(-1, ' ', false, Json::error_handler_t::replace));
}

} // namespace hopsel
