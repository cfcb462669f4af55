// Answers what another start of the program asks of this one: its state, a switch, a pause.
//
// Made and owned by the delegate, over its model. A request and a reply are one JSON object each; a request
// is outside input and is refused in words if it is wrong. A switch is answered when the engine has told how
// it ended, or when the deadline has passed.
#pragma once

#include "model/app_model.h"

#include <QObject>
#include <QTimer>
#include <functional>
#include <map>
#include <nlohmann/json.hpp>
#include <string>

namespace hopsel {

/// What the program started from a terminal exits with.
enum class ExitCode { done = 0, failed = 1, usage = 2, notRunning = 3, noAnswer = 4 };

class CommandDesk final : public QObject {
  public:
    using Answer = std::function<void(const std::string& reply)>;

    explicit CommandDesk(AppModel& model);
    ~CommandDesk() override { model_.onEngineEvent = nullptr; }

    /// `{"command": "toggle", "argument": "2"}`, answered by `{"exit": 0, "text": "…", "data": {…}}`.
    void ask(const std::string& request, const Answer& answer);

    std::function<void()> onSettings;
    std::function<void()> onQuit;
    /// How long a switch may take.
    void setDeadline(std::chrono::milliseconds deadline) { deadline_ = deadline; }

  private:
    using Json = nlohmann::json;

    Json status() const;
    Json sources() const;
    std::string statusText() const;
    std::string sourcesText() const;
    const Rule* ruleNamed(const std::string& argument) const;
    void select(const std::string& id, const Answer& answer);
    void toggle(const std::string& argument, const Answer& answer);
    void switchTo(const InputSourceRef& a, const InputSourceRef& b, const Answer& answer);
    void hear(const EngineEvent& event);
    void finish(const std::string& name, ExitCode code, const std::string& text);
    static void reply(const Answer& answer, ExitCode code, const std::string& text, Json data = nullptr);

    AppModel& model_;
    std::map<std::string, Answer> waiting_; ///< for the end of a switch, by the name it was given
    std::chrono::milliseconds deadline_ = std::chrono::seconds(2);
    int lastNumber_ = 0;
};

} // namespace hopsel
