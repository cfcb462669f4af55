#include "session/text_field.h"

#include <stdexcept>

namespace hopsel::session {

namespace {

constexpr auto startTimeout = std::chrono::seconds(20);

ChildProcess::Options options(const std::string& inputMethod) {
    ChildProcess::Options options;
    options.program = "/usr/bin/python3"; // the one that Debian's modules belong to
    options.arguments = {HOPSEL_TEXT_FIELD_PROGRAM};
    options.package = "python3";
    options.environment = {{"GTK_IM_MODULE", inputMethod},
                           {"NO_AT_BRIDGE", "1"},
                           {"GDK_BACKEND", inputMethod == "wayland" ? "wayland" : "x11"},
                           {"GTK_THEME", "Adwaita"},
                           {"LC_ALL", "C.UTF-8"}};
    options.output = ChildProcess::Output::capture;
    return options;
}

} // namespace

TextField::TextField(const std::string& inputMethod) : process_(options(inputMethod)) {
    if (!process_.waitForLine("focus", startTimeout))
        throw std::runtime_error(
            "the text field did not start; it needs the packages python3-gi and gir1.2-gtk-3.0");
}

bool TextField::waitForText(const std::string& text, std::chrono::milliseconds timeout) {
    return waitFor(text_, text, timeout);
}

bool TextField::waitForComposed(const std::string& text, std::chrono::milliseconds timeout) {
    return waitFor(composed_, text, timeout);
}

bool TextField::waitFor(const std::string& value, const std::string& wanted,
                        std::chrono::milliseconds timeout) {
    const std::string text = "text ", composed = "composed ";
    const Deadline deadline(timeout);
    while (value != wanted) {
        const auto line = process_.waitForLine("", std::chrono::milliseconds(deadline.millisecondsLeft()));
        if (!line) return false;
        if (line->rfind(text, 0) == 0) text_ = line->substr(text.size());
        if (line->rfind(composed, 0) == 0) composed_ = line->substr(composed.size());
    }
    return true;
}

} // namespace hopsel::session
