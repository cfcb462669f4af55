// Another program's text field, with the input method that is asked for: where a user's keys end as text.
//
// A GTK program of its own; keys reach it through the X server and the input method's daemon. Make it after a
// window manager has been started, and destroy it before the server.
#pragma once

#include "session/child_process.h"

#include <chrono>
#include <functional>
#include <string>

namespace hopsel::session {

class TextField {
  public:
    /// `inputMethod` is GTK's name for it: "ibus" or "fcitx" under X11, "wayland" for the compositor's.
    /// Returns when the field has the focus. Throws `std::runtime_error`.
    explicit TextField(const std::string& inputMethod, bool isPassword = false);

    /// What it holds, without what is being composed, as of the last wait.
    const std::string& text() const { return text_; }
    /// What is being composed at the cursor, as of the last wait.
    const std::string& composed() const { return composed_; }

    /// What the keyboard has sent to it, as of the last wait: "+29" is pressed, "-29" released, by the
    /// kernel's numbers, each after a space.
    const std::string& keys() const { return keys_; }

    /// Waits until it holds exactly this; false at the deadline.
    bool waitForText(const std::string& text, std::chrono::milliseconds timeout = std::chrono::seconds(20));
    bool waitForComposed(const std::string& text,
                         std::chrono::milliseconds timeout = std::chrono::seconds(20));
    /// Waits until `keys` ends with this.
    bool waitForKeys(const std::string& keys, std::chrono::milliseconds timeout = std::chrono::seconds(20));

  private:
    bool waitFor(const std::function<bool()>& condition, std::chrono::milliseconds timeout);

    ChildProcess process_;
    std::string text_;
    std::string composed_;
    std::string keys_;
};

} // namespace hopsel::session
