// What Linux asks of the process before there is an application object, and undoes once it has started.
//
// Made by `main`, which tells it how far the start has come. It changes the environment of the process: no
// thread may run yet.
#pragma once

#include "platform/interface/launch.h"
#include "platform/linux/x11/keyboard_guard.h"

#include <QByteArray>
#include <memory>

namespace hopsel {

/// A variable of the environment that differs for a while; what we start later sees it as it was.
class HiddenVariable {
  public:
    explicit HiddenVariable(const char* name) : name_(name), value_(qgetenv(name)) {}
    void showAgain() const;

  private:
    const char* name_;
    QByteArray value_;
};

class LinuxLaunch final : public Launch {
  public:
    /// Throws `std::runtime_error`, in words for the user, if this session lacks what nothing can work
    /// without.
    LinuxLaunch();
    void applicationMade() override;
    void finished() override;

  private:
    std::shared_ptr<KeyboardGuard> guard_;
    HiddenVariable busAddress_;
    HiddenVariable desktop_;
    HiddenVariable inputMethod_;
    HiddenVariable windows_;
    HiddenVariable accessibility_;
};

} // namespace hopsel
