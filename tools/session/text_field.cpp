#include "session/text_field.h"

#include <stdexcept>

namespace hopsel::session {

namespace {

constexpr auto startTimeout = std::chrono::seconds(20);

ChildProcess::Options options(const std::string& inputMethod, bool isPassword) {
    ChildProcess::Options options;
    options.program = "/usr/bin/python3"; // the one that Debian's modules belong to
    options.arguments = {HOPSEL_TEXT_FIELD_PROGRAM};
    if (isPassword) options.arguments.emplace_back("password");
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

TextField::TextField(const std::string& inputMethod, bool isPassword)
    : process_(options(inputMethod, isPassword)) {
    if (!process_.waitForLine("focus", startTimeout))
        throw std::runtime_error(
            "the text field did not start; it needs the packages python3-gi and gir1.2-gtk-3.0");
}

bool TextField::waitForText(const std::string& text, std::chrono::milliseconds timeout) {
    return waitFor([&] { return text_ == text; }, timeout);
}

bool TextField::waitForComposed(const std::string& text, std::chrono::milliseconds timeout) {
    return waitFor([&] { return composed_ == text; }, timeout);
}

bool TextField::waitForKeys(const std::string& keys, std::chrono::milliseconds timeout) {
    return waitFor([&] { return keys_.ends_with(keys); }, timeout);
}

bool TextField::waitFor(const std::function<bool()>& condition, std::chrono::milliseconds timeout) {
    const std::string text = "text ", composed = "composed ", key = "key ";
    const Deadline deadline(timeout);
    while (!condition()) {
        const auto line = process_.waitForLine("", std::chrono::milliseconds(deadline.millisecondsLeft()));
        if (!line) return false;
        if (line->rfind(text, 0) == 0) text_ = line->substr(text.size());
        if (line->rfind(composed, 0) == 0) composed_ = line->substr(composed.size());
        if (line->rfind(key, 0) == 0) keys_ += " " + line->substr(key.size());
    }
    return true;
}

} // namespace hopsel::session
