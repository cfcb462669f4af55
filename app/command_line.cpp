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
        const auto* option = std::find_if(std::begin(options), std::end(options),
                                          [&](const Option& each) { return each.name == *argument; });
        if (option == std::end(options))
            return refused((argument->rfind('-', 0) == 0 ? "unknown option: " : "unexpected argument: ") +
                           *argument);
        if (result.wish != Wish::help && result.wish != Wish::version) result.wish = option->wish;
    }
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
    line("--render-ui FOLDER", "draw every window into picture files and exit");
    return text;
}

} // namespace hopsel
