// The program's one permanent presence: an icon in the panel that tells the state at a glance, and its menu.
//
// Made and owned by start-up; follows the application model. The icon is made once a panel is there, because
// the toolkit decides at that moment how to talk to it. Without a panel `menu` can be shown elsewhere.
#pragma once

#include "app/model/app_model.h"
#include "ui/menubar/tray_host.h"

#include <QMenu>
#include <QSystemTrayIcon>
#include <functional>
#include <memory>

namespace hopsel {

class StatusItemController final : public QObject {
  public:
    StatusItemController(AppModel& model, const QDBusConnection& bus);
    ~StatusItemController() override;

    std::function<void()> onOpenSettings;
    std::function<void()> onOpenBugReport;
    std::function<void()> onQuit;
    /// A panel is there, or none is; called first when it is known.
    std::function<void(bool hasHost)> onHostChanged;

    /// Looks for a panel; the answer comes from the event loop.
    void start();
    bool hasHost() const { return host_.kind() != TrayHost::Kind::none; }
    /// Built afresh each time it opens.
    QMenu& menu() { return menu_; }
    void refresh();

  private:
    void takeHost(TrayHost::Kind kind);
    void click(MenuAction action);
    QIcon icon() const;

    AppModel& model_;
    QMenu menu_;
    TrayHost host_;
    std::unique_ptr<QSystemTrayIcon> item_;
};

} // namespace hopsel
