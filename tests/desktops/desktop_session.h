// A whole desktop of a test's own, started by tools/desktops/start, with the program in it and a window to
// type into.
//
// Its server, bus and home folder are named by the environment of this process while it lives: one in a
// process.
#pragma once

#include "session/child_process.h"
#include "session/temporary_folder.h"
#include "session/x_keyboard.h"
#include "session/x_layouts.h"
#include "session/x_screenshot.h"
#include "session/x_window.h"

#include <QImage>
#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace hopsel::test {

using namespace session;

/// For desktops on a busy machine; nothing waits that long otherwise.
inline constexpr auto patience = std::chrono::seconds(60);
/// Until one has started: KDE takes 10 s on an idle machine, and has taken more than 60 s beside four builds.
inline constexpr auto startPatience = std::chrono::seconds(240);

class DesktopSession {
  public:
    /// `name` as tools/desktops/start takes it. Returns when it has a window manager and the window the
    /// focus. Throws `std::runtime_error`.
    explicit DesktopSession(const std::string& name);

    /// Starts the program with these rules. Left Shift+Space has to be among their triggers: returns
    /// when it has switched, with the first layout.
    void startProgram(std::string_view settings);
    /// Right Command, as slow as a finger.
    void tap();
    /// Taps it and waits until the group is locked; false at the deadline.
    bool tapReaches(int group);
    /// The screen, once it has come to rest.
    QImage screen();
    /// The same, once it is as wanted: nothing tells when a panel has drawn. What there is at the deadline.
    QImage screenThat(const std::function<bool(const QImage& screen)>& isWanted,
                      std::chrono::milliseconds timeout = patience);

    XTestWindow& window() { return *window_; }
    XKeyboard& keyboard() { return *keyboard_; }
    XLayouts& layouts() { return *layouts_; }

  private:
    TemporaryFolder folder_;
    std::unique_ptr<ChildProcess> desktop_;
    std::unique_ptr<XScreenshots> screenshots_;
    std::unique_ptr<XKeyboard> keyboard_;
    std::unique_ptr<XLayouts> layouts_;
    std::unique_ptr<XTestWindow> window_;
    std::unique_ptr<ChildProcess> program_;
};

/// Where two pictures differ, as one rectangle; empty if nowhere.
QRect difference(const QImage& before, const QImage& after);
/// The best contrast of two colours in that rectangle of the later picture, as the accessibility guidelines
/// for text define it; 0 if nothing differs.
double contrastOfNew(const QImage& before, const QImage& after);

} // namespace hopsel::test
