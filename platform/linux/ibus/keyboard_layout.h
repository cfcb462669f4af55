// Gives the X server the keyboard layout that an engine is made for, as IBus's own switcher would.
//
// A member of the framework: setting an engine in the daemon leaves the layout to whoever sets it. A layout
// that the session has loaded already is locked at once; any other is loaded by setxkbmap in place of all
// that were, which takes some tenths of a second and is not waited for. The layouts that will be wanted next
// are loaded along: IBus's switcher would load one alone, and so again at every switch.
#pragma once

#include "core/platform/log.h"
#include "platform/linux/xkb/xkb_server.h"

#include <QProcess>
#include <QSocketNotifier>
#include <memory>
#include <optional>

namespace hopsel {

class KeyboardLayout {
  public:
    /// `log` must outlive it.
    explicit KeyboardLayout(Log& log);
    ~KeyboardLayout();
    KeyboardLayout(const KeyboardLayout&) = delete;
    KeyboardLayout& operator=(const KeyboardLayout&) = delete;

    struct Wanted {
        XkbLayout layout; ///< empty: any will do
        /// One with Latin letters is loaded along, without which the shortcuts of most programs could not be
        /// typed.
        bool withLatin = false;
        std::vector<XkbLayout> others; ///< loaded along as far as there is room
        bool withUsersChanges = false; ///< by xmodmap, which loading undoes
    };
    void apply(const Wanted& wanted);

  private:
    bool connect();
    void takeEvents();
    bool lockLoaded(const XkbLayout& layout);
    void load(const Wanted& wanted);
    void finishLoading();
    void makeUsersChanges();

    Log& log_;
    std::unique_ptr<XkbServer> server_;         ///< made when a layout is first applied
    std::unique_ptr<QSocketNotifier> notifier_; ///< on the server's descriptor, so destroyed before it
    std::vector<XkbGroup> groups_;
    bool areGroupsStale_ = true;
    std::optional<Wanted> next_;      ///< what came while setxkbmap ran
    bool isWithUsersChanges_ = false; ///< what setxkbmap was started for last
    QProcess setxkbmap_;
    QProcess xmodmap_;
};

} // namespace hopsel
