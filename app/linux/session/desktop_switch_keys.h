// The combinations with which the desktop itself switches input sources, so that a rule on the same one can
// warn.
//
// Owned by the platform, shared with the application model's question. Which program is in charge is followed
// on the session bus; what it binds is read when somebody asks.
#pragma once

#include "app/linux/session/switch_key_sources.h"
#include "core/keys/shortcut_key.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QString>
#include <set>
#include <vector>

namespace hopsel {

class DesktopSwitchKeys final : public QObject {
  public:
    explicit DesktopSwitchKeys(const QDBusConnection& bus,
                               const std::filesystem::path& fcitxFile = FcitxHotkeys::defaultFile());

    /// Left modifiers; sides mean nothing here.
    std::vector<ShortcutKey> bindings();
    bool conflicts(const ShortcutKey& key);

  private:
    void askForOwner(const QString& name);
    bool owns(const char* name) const { return owned_.count(QString(name)) != 0; }

    QDBusConnection bus_;
    QDBusServiceWatcher watcher_;
    std::set<QString> owned_; ///< the names that somebody owns
    FcitxHotkeys fcitx_;
    DesktopSetting ibus_;
    DesktopSetting gnomeForward_;
    DesktopSetting gnomeBackward_;
    XkbOptions xkb_;
};

} // namespace hopsel
