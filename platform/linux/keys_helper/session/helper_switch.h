// Turns the key helper's service on: the system asks the user, and then runs the one program that does just
// that (polkit's pkexec, our packaging/linux/keys_helper/hopsel-keys-enable).
//
// A member of the key session. The question stands for as long as the user likes, one at a time; it goes on
// when this is gone.
#pragma once

#include <QObject>
#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace hopsel {

class HelperSwitch {
  public:
    enum class Outcome {
        on,
        declined,
        notAsked, ///< nothing here can ask, or this user may not
        failed,
    };

    /// `program` is the one to be run, empty where there is none.
    explicit HelperSwitch(std::string program) : program_(std::move(program)) {}

    /// `onEnd` is called at once or from the event loop, unless `context` is gone by then. Nothing happens
    /// while a question stands.
    void turnOn(const QObject* context, std::function<void(Outcome)> onEnd);

  private:
    std::string program_;
    std::shared_ptr<bool> isAsking_ = std::make_shared<bool>(false);
};

} // namespace hopsel
