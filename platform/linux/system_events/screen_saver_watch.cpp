#include "platform/linux/system_events/screen_saver_watch.h"

#include "platform/linux/bus/bus_call.h"

namespace hopsel {

namespace {

/// Names that are interfaces as well. Screen lockers that belong to no desktop have the first.
struct Saver {
    const char* name;
    const char* path;
};
constexpr Saver known[] = {{"org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver"},
                           {"org.gnome.ScreenSaver", "/org/gnome/ScreenSaver"},
                           {"org.mate.ScreenSaver", "/org/mate/ScreenSaver"},
                           {"org.cinnamon.ScreenSaver", "/org/cinnamon/ScreenSaver"},
                           {"org.xfce.ScreenSaver", "/org/xfce/ScreenSaver"}};

} // namespace

ScreenSaverWatch::ScreenSaverWatch(const std::shared_ptr<BusLink>& sessionBus,
                                   std::function<void(bool isActive)> onActive)
    : onActive_(std::move(onActive)) {
    // The same signal under the names of the desktops, from objects of various paths.
    for (const Saver& saver : known) {
        const QString name = saver.name, path = saver.path;
        const std::size_t index = savers_.size();
        savers_.push_back(std::make_unique<BusName>(sessionBus, name, [this, index, name, path] {
            set(name, false);
            ask(*savers_[index], name, path);
        }));
        savers_.back()->listen({"", "", name, "ActiveChanged", "b", ""},
                               [this, name](const QDBusMessage& signal) {
                                   set(name, signal.arguments().constFirst().toBool());
                               });
    }
}

// It may have locked the screen before we were started.
void ScreenSaverWatch::ask(BusName& saver, const QString& name, const QString& path) {
    saver.call(path, name, "GetActive", {}, &context_, [this, name](const QDBusMessage& reply) {
        if (bus_call::flagIn(reply).value_or(false)) set(name, true);
    });
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
