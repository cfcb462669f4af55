// What the words after the program's name ask for. Pure: nothing is done here.
//
// Read once by `main`, before the toolkit sees the arguments. Those that the toolkit and the systems hand to
// every program (a session's identifier, a display) are let through; any other that is not known is wrong, so
// that a mistyped option never starts a program that does something else.
#pragma once

#include <string>
#include <vector>

namespace hopsel {

struct CommandLine {
    enum class Wish {
        run,        ///< the program with its windows
        background, ///< the same, but nothing is shown: how a session starts it at login
        renderUI,   ///< every window into files
        help,
        version,
        ask,    ///< the copy that runs, for `command`
        refuse, ///< `problem` says why
    };

    Wish wish = Wish::run;
    std::string renderDirectory; ///< for `renderUI`
    std::string problem;         ///< for `refuse`, in words for a terminal
    std::string command = {};    ///< for `ask`, as the option without its dashes
    std::string argument = {};   ///< what stands behind it; may be empty
    bool json = false;           ///< for `ask`: answers for programs

    /// `arguments` without the program's own name.
    static CommandLine read(const std::vector<std::string>& arguments);
    /// For a terminal, with a line for each option.
    static std::string help();
};

} // namespace hopsel
