#include "platform/linux/gnome/gnome_key_session.h"

#include <QDBusMessage>
#include <optional>
#include <utility>

namespace hopsel {

namespace {

constexpr unsigned allModifiers = 0xff;
constexpr double microseconds = 1e6;

/// The extension's numbers of modifiers are the places in the list of all.
ModifierSet modifiersIn(unsigned bits) {
    ModifierSet set;
    for (std::size_t i = 0; i < allModifierKeys.size(); ++i)
        if ((bits >> i & 1U) != 0) set.insert(allModifierKeys[i]);
    return set;
}

class GnomePermissions final : public Permissions {
  public:
    explicit GnomePermissions(std::shared_ptr<GnomeExtension> extension) : extension_(std::move(extension)) {}

    bool accessibilityGranted() override { return extension_->isAsked() || extension_->can("combinations"); }
    bool requestAccessibility() override { return accessibilityGranted(); }
    bool inputMonitoringGranted() override { return extension_->isAsked() || extension_->can("taps"); }
    bool requestInputMonitoring() override { return inputMonitoringGranted(); }

  private:
    std::shared_ptr<GnomeExtension> extension_;
};

} // namespace

GnomeKeySession::GnomeKeySession(const std::shared_ptr<BusLink>& sessionBus,
                                 std::shared_ptr<GnomeExtension> extension, std::function<double()> clock,
                                 Log& log)
    : extension_(std::move(extension)),
      clock_(std::move(clock)),
      listenSource_(std::make_shared<GnomeListenSource>(extension_)),
      shortcutSource_(std::make_shared<GnomeShortcutSource>(extension_, log)),
      switch_(sessionBus) {
    extension_->listen("Key", "suux", &context_, [this](const QDBusMessage& signal) { takeKey(signal); });
}

std::shared_ptr<Permissions> GnomeKeySession::permissions() {
    return std::make_shared<GnomePermissions>(extension_);
}

void GnomeKeySession::takeKey(const QDBusMessage& signal) {
    const QVariantList arguments = signal.arguments();
    const QString what = arguments[0].toString();
    const uint key = arguments[1].toUInt();
    const uint held = arguments[2].toUInt();
    if (held > allModifiers) return;
    const double time = time_.take(static_cast<double>(arguments[3].toLongLong()) / microseconds, clock_());
    const std::uint64_t flags = flagsOf(modifiersIn(held));

    bool isModifierDown = false;
    if (what == "down" || what == "up") {
        if (key >= allModifierKeys.size()) return;
        listenSource_->heard({RawEventType::flagsChanged, keyCode(allModifierKeys[key]), flags, time, false});
        isModifierDown = what == "down";
    } else if (what == "key") {
        listenSource_->heard({RawEventType::keyDown, 0, flags, time, false});
    } else if (what == "button" || what == "scroll") {
        listenSource_->heard({RawEventType::mouseDown, 0, flags, time, false});
    } else if (what == "swallowed" || what == "released") {
        const bool isPress = what == "swallowed";
        // What the engine takes from the filter it tells itself.
        if (!shortcutSource_->swallowed(key, flags, isPress) && isPress)
            listenSource_->heard({RawEventType::keyDown, 0, flags, time, false});
    }
    if (isModifierDown && onModifierDown) onModifierDown();
    if (onHandled) onHandled();
}

} // namespace hopsel
