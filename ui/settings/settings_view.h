// The contents of the Settings window: the sidebar, and the pane that is selected in it.
//
// Made and owned by the window controller. Only the shown pane exists, so that what a pane does while it is
// visible (recording) begins and ends with it.
#pragma once

#include "core/platform/local_key_monitoring.h"
#include "model/app_model.h"
#include "ui/settings/settings_navigation.h"

#include <QHBoxLayout>
#include <QMenu>
#include <QPointer>
#include <QWidget>
#include <map>
#include <memory>

namespace hopsel {

namespace design {
class SidebarRow;
}

class SettingsView final : public QWidget {
  public:
    SettingsView(AppModel& model, SettingsNavigation& navigation, std::shared_ptr<LocalKeyMonitoring> keys,
                 QWidget* parent = nullptr);

    /// Shows the navigation's pane. Happens by itself, a moment later, when that changes.
    void showPane();
    /// A button for the status item's menu at the sidebar's lower end; none when null.
    void setMenu(QMenu* menu);

  private:
    QWidget* sidebar();
    QWidget* makePane(SettingsPane pane);

    AppModel& model_;
    SettingsNavigation& navigation_;
    std::shared_ptr<LocalKeyMonitoring> keys_;
    std::map<SettingsPane, design::SidebarRow*> rows_;
    design::SidebarRow* menuRow_ = nullptr;
    QPointer<QMenu> menu_;
    QHBoxLayout* row_;
    QPointer<QWidget> pane_;
    std::optional<SettingsPane> shown_;
};

} // namespace hopsel
