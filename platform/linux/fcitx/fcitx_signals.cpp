#include "platform/linux/fcitx/fcitx_signals.h"

#include <QDBusPendingCallWatcher>
#include <utility>

namespace hopsel {

namespace {

using namespace std::chrono_literals;

constexpr auto quiet = 2ms, atMost = 20ms;
constexpr auto iconPath = "/StatusNotifierItem", iconInterface = "org.kde.StatusNotifierItem";
constexpr qsizetype mostIcons = 1000;

} // namespace

FcitxSignals::FcitxSignals(const QDBusConnection& bus, const QString& owner)
    : bus_(bus), shownTimer_(quiet, atMost, [this] {
          if (onMethodShown) onMethodShown();
      }) {
    iconDeath_.setConnection(bus_);
    iconDeath_.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
    connect(&iconDeath_, &QDBusServiceWatcher::serviceUnregistered, this, [this] { listenTo(QString()); });
    // Fcitx5 declares it, but up to 5.0 never sends it.
    bus_.connect(owner, "/controller", "org.fcitx.Fcitx.Controller1", "InputMethodGroupsChanged", this,
                 SLOT(groupsChanged(QDBusMessage)));
    bus_.connect(owner, "/kimpanel", "org.kde.kimpanel.inputmethod", "UpdateProperty", this,
                 SLOT(panelChanged(QDBusMessage)));
    bus_.connect(icon_, iconPath, iconInterface, "NewIcon", this, SLOT(iconChanged(QDBusMessage)));
    askProcess(owner, [this](unsigned process) { process_ = process; });
}

void FcitxSignals::groupsChanged(const QDBusMessage&) {
    if (onGroupsChanged) onGroupsChanged();
}

void FcitxSignals::panelChanged(const QDBusMessage&) { shownTimer_.noteChange(); }

void FcitxSignals::iconChanged(const QDBusMessage& signal) {
    const QString sender = signal.service();
    if (sender == icon_) return shownTimer_.noteChange();
    if (!icon_.isEmpty() || otherIcons_.contains(sender) || otherIcons_.size() >= mostIcons) return;
    askProcess(sender, [this, sender](unsigned process) {
        // The bus answers in order, so Fcitx5's own process is known by now.
        if (process == 0) return; // asked again at its next sign
        if (process != process_) {
            otherIcons_.insert(sender);
            return;
        }
        listenTo(sender);
        shownTimer_.noteChange();
    });
}

void FcitxSignals::listenTo(const QString& icon) {
    bus_.disconnect(icon_, iconPath, iconInterface, "NewIcon", this, SLOT(iconChanged(QDBusMessage)));
    icon_ = icon;
    otherIcons_.clear();
    iconDeath_.setWatchedServices(icon_.isEmpty() ? QStringList() : QStringList{icon_});
    // From its sender alone: other programs' icons may move all the time, and would wake us each time.
    bus_.connect(icon_, iconPath, iconInterface, "NewIcon", this, SLOT(iconChanged(QDBusMessage)));
}

void FcitxSignals::askProcess(const QString& name, std::function<void(unsigned)> onAnswer) {
    auto question = QDBusMessage::createMethodCall("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                                   "org.freedesktop.DBus", "GetConnectionUnixProcessID");
    question << name;
    auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(question), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [watcher, onAnswer = std::move(onAnswer)] {
        watcher->deleteLater();
        onAnswer(watcher->reply().arguments().value(0).toUInt());
    });
}

} // namespace hopsel
