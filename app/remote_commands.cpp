#include "app/remote_commands.h"

#include "app/command_desk.h"

#include <cstdio>

namespace hopsel {

namespace {

int fail(ExitCode code, const char* text) {
    std::fprintf(stderr, "hopsel: %s\n", text);
    return static_cast<int>(code);
}

} // namespace

int askRunningCopy(const CommandLine& line, const SingleInstance& instance) {
    using nlohmann::json;
    const json request{{"command", line.command}, {"argument", line.argument}};
    std::string answer;
    switch (instance.askOther(request.dump(-1, ' ', false, json::error_handler_t::replace), answer)) {
    case SingleInstance::Asked::notRunning: return fail(ExitCode::notRunning, "no copy is running");
    case SingleInstance::Asked::noAnswer: return fail(ExitCode::noAnswer, "the running copy does not answer");
    case SingleInstance::Asked::answered: break;
    }
    const json reply = json::parse(answer, nullptr, false);
    if (!reply.is_object() || !reply.contains("exit") || !reply["exit"].is_number_integer() ||
        !reply.contains("text") || !reply["text"].is_string())
        return fail(ExitCode::noAnswer, "the running copy answers something else");
    const int code = reply["exit"].get<int>();
    const auto text = reply["text"].get<std::string>();
    if (code != 0) {
        if (line.json) std::puts(json{{"error", text}}.dump().c_str());
        return fail(static_cast<ExitCode>(code), text.c_str());
    }
    if (line.json)
        std::puts(reply.value("data", json()).dump(2).c_str());
    else if (!text.empty())
        std::printf("%s%s", text.c_str(), text.back() == '\n' ? "" : "\n");
    return code;
}

} // namespace hopsel
