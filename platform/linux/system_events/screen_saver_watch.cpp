#include "platform/linux/system_events/screen_saver_watch.h"

namespace hopsel {

ScreenSaverWatch::ScreenSaverWatch(const std::shared_ptr<BusLink>& sessionBus,
                                   std::function<void(bool isActive)> onActive)
    : onActive_(std::move(onActive)) {
    // The same signal under the names of the desktops; the objects' paths differ.
    for (const char* saver : {"org.freedesktop.ScreenSaver", "org.gnome.ScreenSaver", "org.mate.ScreenSaver",
                              "org.cinnamon.ScreenSaver", "org.xfce.ScreenSaver"}) {
        const QString name = saver;
        savers_.push_back(std::make_unique<BusName>(sessionBus, name, [this, name] { set(name, false); }));
        savers_.back()->listen({"", "", name, "ActiveChanged", "b", ""},
                               [this, name](const QDBusMessage& signal) {
                                   set(name, signal.arguments().constFirst().toBool());
                               });
    }
}

void ScreenSaverWatch::set(const QString& saver, bool isActive) {
    const bool wasAny = !active_.isEmpty();
    if (isActive)
        active_.insert(saver);
    else
        active_.remove(saver);
    if (const bool isAny = !active_.isEmpty(); isAny != wasAny) onActive_(isAny);
}

} // namespace hopsel
