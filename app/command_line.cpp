#include "app/command_line.h"

#include <algorithm>
#include <string_view>

namespace hopsel {

namespace {

using Wish = CommandLine::Wish;

struct Option {
    std::string_view name;
    Wish wish;
    std::string_view explanation;
};

constexpr Option options[] = {
    {"--background", Wish::background, "start without showing a window, as at login"},
    {"--help", Wish::help, "show this help and exit"},
    {"--version", Wish::version, "show the version and exit"},
};

struct Command {
    std::string_view name;
    std::string_view argument; ///< what the help calls it; empty where there is none
    bool needsArgument;
    std::string_view explanation;
};

constexpr Command commands[] = {
    {"--status", "", false, "tell the state of the running copy"},
    {"--list-sources", "", false, "list its input sources"},
    {"--select", "ID", true, "select the input source"},
    {"--toggle", "[RULE]", false, "switch as the rule does; a number or an identifier, else the first"},
    {"--pause", "", false, "switch no more"},
    {"--resume", "", false, "switch again"},
    {"--settings", "", false, "show its Settings window"},
    {"--quit", "", false, "end it"},
};

constexpr std::string_view asJson = "--json";

constexpr std::string_view render = "--render-ui";

/// The toolkit's own, each with a value.
constexpr std::string_view withValue[] = {"-display",         "-geometry",    "-platform",
                                          "-qwindowgeometry", "-qwindowicon", "-qwindowtitle",
                                          "-session",         "-style",       "-stylesheet"};

/// What a session or a Mac's launcher adds.
constexpr std::string_view foreignBeginnings[] = {"-psn_", "-NS", "-Apple"};

std::string_view singleDash(std::string_view argument) {
    return argument.substr(0, 2) == "--" ? argument.substr(1) : argument;
}

bool isForeign(std::string_view argument) {
    return std::any_of(std::begin(foreignBeginnings), std::end(foreignBeginnings),
                       [&](std::string_view beginning) { return argument.rfind(beginning, 0) == 0; });
}

bool takesValue(std::string_view argument) {
    return isForeign(argument) ? argument.rfind("-psn_", 0) != 0
                               : std::find(std::begin(withValue), std::end(withValue),
                                           singleDash(argument)) != std::end(withValue);
}

CommandLine refused(std::string problem) { return {Wish::refuse, {}, std::move(problem)}; }

} // namespace

CommandLine CommandLine::read(const std::vector<std::string>& arguments) {
    // Pictures go before everything else, whatever stands around.
    const auto rendering = std::find(arguments.begin(), arguments.end(), render);
    if (rendering != arguments.end() && rendering + 1 != arguments.end())
        return {Wish::renderUI, *(rendering + 1), {}};

    CommandLine result;
    for (auto argument = arguments.begin(); argument != arguments.end(); ++argument) {
        if (*argument == render) continue; // as the last argument it means nothing
        if (takesValue(*argument)) {
            // A session that is taken up again starts its programs with what was open: nothing of ours was.
            if (singleDash(*argument) == "-session") result.wish = Wish::background;
            if (argument + 1 != arguments.end()) ++argument;
            continue;
        }
        if (isForeign(*argument)) continue;
        if (*argument == asJson) {
            result.json = true;
            continue;
        }
        const auto* command = std::find_if(std::begin(commands), std::end(commands),
                                           [&](const Command& each) { return each.name == *argument; });
        if (command != std::end(commands)) {
            if (!result.command.empty()) return refused("one command at a time: " + *argument);
            result.command = argument->substr(2);
            const auto next = argument + 1;
            const bool hasArgument = !command->argument.empty() && next != arguments.end() &&
                                     (command->needsArgument || next->rfind("--", 0) != 0);
            if (command->needsArgument && (!hasArgument || next->empty()))
                return refused(*argument + " needs " + std::string(command->argument));
            if (hasArgument) result.argument = *++argument;
            if (result.wish == Wish::run) result.wish = Wish::ask;
            continue;
        }
        const auto* option = std::find_if(std::begin(options), std::end(options),
                                          [&](const Option& each) { return each.name == *argument; });
        if (option == std::end(options))
            return refused((argument->rfind('-', 0) == 0 ? "unknown option: " : "unexpected argument: ") +
                           *argument);
        if (result.wish != Wish::help && result.wish != Wish::version) result.wish = option->wish;
    }
    const bool asks = !result.command.empty();
    if (result.json && !asks) return refused("--json needs a command");
    if (asks && result.wish == Wish::background)
        return refused("--background starts a copy, --" + result.command + " asks the one that runs");
    return result;
}

std::string CommandLine::help() {
    std::string text =
        "Usage: hopsel [option]\n\n"
        "Switches the keyboard's input source with a trigger key. Started again while it runs,\n"
        "it brings its window to the front.\n\n";
    const auto line = [&text](std::string_view name, std::string_view explanation) {
        constexpr std::size_t column = 24;
        text.append("  ").append(name);
        text.append(name.size() + 2 < column ? column - name.size() - 2 : 1, ' ');
        text.append(explanation).append("\n");
    };
    for (const Option& option : options) line(option.name, option.explanation);
    text += "\nOf the copy that runs:\n";
    for (const Command& command : commands)
        line(std::string(command.name) + (command.argument.empty() ? "" : " ") +
                 std::string(command.argument),
             command.explanation);
    line(asJson, "answer in JSON");
    text += "\nFor developers:\n";
    line("--render-ui FOLDER", "draw every window into picture files and exit");
    return text;
}

} // namespace hopsel
