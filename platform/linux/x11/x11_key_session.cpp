#include "platform/linux/x11/x11_key_session.h"

#include "platform/linux/x11/keyboard_guard.h"
#include "platform/linux/x11/x11_guest_key_sender.h"
#include "platform/linux/x11/x11_keymap.h"
#include "platform/linux/x11/x11_permissions.h"
#include "platform/linux/x11/x11_shortcut_source.h"

#include <stdexcept>

namespace hopsel {

X11KeySession::X11KeySession(X11KeyHook::Clock clock, std::function<void(double)> runLoop, Log& log)
    : runLoop_(std::move(runLoop)),
      log_(log),
      hook_(std::make_shared<X11KeyHook>(std::move(clock), KeyboardGuard::ofThisProcess())),
      listenSource_(std::make_shared<X11ListenSource>(
          hook_, X11TapGuard::keyFor(qEnvironmentVariable("XDG_CURRENT_DESKTOP")))) {
    hook_->onHandled = [this] {
        if (onHandled) onHandled();
    };
    hook_->onGivenBack = [this] {
        log_.write(Log::Level::error, "Keys",
                   "stood still for a second while a key waited: the keyboard was given back, and is taken "
                   "again now");
    };
    listenSource_->onModifierDown = [this] {
        if (onModifierDown) onModifierDown();
    };
}

std::shared_ptr<ShortcutSource> X11KeySession::shortcutSource() {
    return std::make_shared<X11ShortcutSource>(hook_, log_);
}

std::shared_ptr<GuestKeySending> X11KeySession::guestKeySender() {
    return std::make_shared<X11GuestKeySender>(hook_, runLoop_);
}

std::shared_ptr<Permissions> X11KeySession::permissions() { return std::make_shared<X11Permissions>(); }

std::function<PrintedKeys()> X11KeySession::printedKeys() const {
    // While nothing listens, nobody follows the keymap; what it was at the start has to do.
    PrintedKeys first;
    try {
        X11Connection connection;
        first = x11_keymap::readMeanings(connection).printed();
    } catch (const std::runtime_error&) {
        first = {}; // those of a plain keyboard
    }
    return [hook = std::weak_ptr<X11KeyHook>(hook_), first] {
        const auto now = hook.lock();
        return now && now->isOpen() ? now->meanings().printed() : first;
    };
}

} // namespace hopsel
