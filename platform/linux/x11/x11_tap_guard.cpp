#include "platform/linux/x11/x11_tap_guard.h"

#include <QStringList>
#include <linux/input-event-codes.h>

namespace hopsel {

namespace {

/// Nobody acts on a lone Shift or Control.
bool isActedUpon(ModifierKey key) {
    return family(key) == ModifierFamily::command || family(key) == ModifierFamily::option;
}

} // namespace

X11TapGuard::Key X11TapGuard::keyFor(const QString& desktop) {
    const QStringList names = desktop.split(u':');
    return names.contains("X-Cinnamon") || names.contains("Cinnamon") ? Key::control : Key::silent;
}

void X11TapGuard::modifierDown(const RawEvent& event) {
    const auto key = modifierKeyFromKeyCode(event.keyCode);
    if (!key || !triggers_.contains(*key) || !isActedUpon(*key)) return;
    // With another one held it is no lone tap any more, for the engine as for a launcher.
    if (heldModifiers(event.flags) != ModifierSet{*key}) return;
    const auto code = linuxCode();
    if (code && hook_.post(*code, true)) hook_.post(*code, false);
}

std::optional<std::uint16_t> X11TapGuard::linuxCode() const {
    if (key_ == Key::control) return KEY_LEFTCTRL;
    return hook_.silentKey();
}

} // namespace hopsel
