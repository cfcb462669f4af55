// A real X server with an application's window, a keyboard, and the hook with its two sources in this
// process.
//
// The filter swallows what a shortcut matcher says, as the engine would; everything heard and asked is
// recorded. Tests wait for what must arrive last, never for time to pass.
#pragma once

#include "core/keys/shortcut_matcher.h"
#include "platform/linux/x11/x11_key_hook.h"
#include "platform/linux/x11/x11_listen_source.h"
#include "platform/linux/x11/x11_shortcut_source.h"
#include "session/x_keyboard.h"
#include "session/x_layouts.h"
#include "session/x_server.h"
#include "session/x_window.h"
#include "support/fakes/engine_fakes.h"
#include "support/qt_waiting.h"

#include <string>
#include <vector>

namespace hopsel::test {

using namespace session;

inline const ShortcutKey leftShiftSpace{49, {ModifierKey::leftShift}};

class HookRig {
  public:
    explicit HookRig(const std::string& layouts = "us", bool withWindowManager = true,
                     const std::string& windowManagerConfig = {});

    void start(const ShortcutSet& shortcuts = {leftShiftSpace});

    /// Left Shift+Space.
    void typeShortcut();
    /// Types a Q and waits until the window and the listener have it: everything before has been handled.
    void settle();

    /// What was listened to, as "+leftShift k+ k- -leftShift click".
    std::string heard() const;
    std::string typed() { return window->typed(); }

    XServer server;
    std::unique_ptr<XTestWindow> window;
    std::unique_ptr<XKeyboard> keyboard;
    std::shared_ptr<X11KeyHook> hook;
    fakes::RecordingLog log;
    std::unique_ptr<X11ListenSource> listen;
    std::unique_ptr<X11ShortcutSource> filter;
    ShortcutMatcher matcher;
    std::vector<RawEvent> events;
    std::vector<ShortcutKey> fired;
    std::vector<ShortcutInput> asked;
    int disabled = 0;       ///< how often the listening source was taken away
    int filterDisabled = 0; ///< and the filtering one
};

} // namespace hopsel::test
