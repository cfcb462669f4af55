// GNOME's shell without a screen, a keyboard into it, and calls to whatever is on its bus.
#pragma once

#include "session/gnome_session.h"
#include "support/framework_watch.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <chrono>
#include <functional>
#include <utility>
#include <vector>

namespace hopsel::test {

/// A program on the session bus, until it leaves.
class Caller {
  public:
    explicit Caller(const std::string& busAddress);
    ~Caller() { leave(); }
    Caller(const Caller&) = delete;
    Caller& operator=(const Caller&) = delete;

    /// Waits for the reply or the error, in the event loop.
    QDBusMessage call(const QString& service, const QString& path, const QString& interface,
                      const QString& method, const QVariantList& arguments = {});
    QDBusPendingCall begin(const QString& service, const QString& path, const QString& interface,
                           const QString& method, const QVariantList& arguments);
    QDBusMessage wait(const QDBusPendingCall& sent);
    /// To our extension; the error's last word, or empty.
    std::string error(const QString& method, const QVariantList& arguments = {});
    /// Calls as fast as it can, until it is told that this is too much.
    bool isFloodRefused(const QString& method, const QVariantList& arguments);
    void leave();

  private:
    QString name_;
    QDBusConnection bus_;
};

/// The shell draws without a graphics card, which takes its time where others work as well.
inline bool eventually(const std::function<bool()>& condition) {
    return runLoopUntil(condition, std::chrono::seconds(60));
}

struct GnomeRig {
    using Kind = session::GnomeSession::Kind;

    /// Waits until the shell has started and our extension answers. On X11 keys are the test's own to type.
    explicit GnomeRig(Kind kind = Kind::wayland);

    /// What the shell says to some lines of its own language.
    std::string evaluate(const QString& script);
    void enableExtension(bool isEnabled);
    /// Presses and releases each, one after the other, as fast as can be: however slow the machine is, none
    /// is held for long.
    void type(const std::vector<int>& evdevCodes);
    void key(int evdevCode, bool isDown);
    void click();
    /// Into the middle of what the script names, with a button by the kernel's number.
    void clickOn(const QString& actor, int button = 0x110);
    void scroll();
    /// Opens the menu of a button of the top bar.
    void openMenu(const QString& button);
    /// Opens it and clicks on the line with this text.
    void chooseInMenu(const QString& button, const QString& text);
    /// What the screen shows, as a file: for who wants to look. Nothing unless HOPSEL_PICTURES names a
    /// folder.
    void keepPicture(const QString& name);
    /// As the lock screen does: extensions are off.
    void setLocked(bool isLocked);

    session::GnomeSession session;
    Caller caller{session.busAddress()};

  private:
    void notify(const std::vector<std::pair<QString, QVariantList>>& events);

    QString keyboard_; ///< the path of mutter's remote desktop
};

} // namespace hopsel::test
