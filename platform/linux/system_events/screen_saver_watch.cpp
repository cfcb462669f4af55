#include "platform/linux/system_events/screen_saver_watch.h"

namespace hopsel {

ScreenSaverWatch::ScreenSaverWatch(const QDBusConnection& bus, std::function<void(bool isActive)> onActive)
    : bus_(bus), onActive_(std::move(onActive)) {
    deaths_.setConnection(bus_);
    deaths_.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
    // One that dies leaves the screen open, whatever it said last.
    connect(&deaths_, &QDBusServiceWatcher::serviceUnregistered, this,
            [this](const QString& saver) { set(saver, false); });
    // The same signal under the names of the desktops; the objects' paths differ.
    for (const char* interface : {"org.freedesktop.ScreenSaver", "org.gnome.ScreenSaver",
                                  "org.mate.ScreenSaver", "org.cinnamon.ScreenSaver", "org.xfce.ScreenSaver"})
        bus_.connect(QString(), QString(), interface, "ActiveChanged", this,
                     SLOT(activeChanged(bool, QDBusMessage)));
}

void ScreenSaverWatch::activeChanged(bool isActive, const QDBusMessage& signal) {
    set(signal.service(), isActive);
}

void ScreenSaverWatch::set(const QString& saver, bool isActive) {
    const bool wasAny = !active_.isEmpty();
    if (isActive) {
        active_.insert(saver);
        deaths_.addWatchedService(saver);
    } else {
        active_.remove(saver);
        deaths_.removeWatchedService(saver);
    }
    if (const bool isAny = !active_.isEmpty(); isAny != wasAny) onActive_(isAny);
}

} // namespace hopsel
