// The one Settings window: made when it is first shown, kept when it is closed.
//
// Made and owned by start-up. Closing ends the recording and a capture of a trigger; the window remembers its
// pane, place and size for as long as the program runs, and nothing beyond.
#pragma once

#include "core/platform/local_key_monitoring.h"
#include "model/app_model.h"
#include "ui/settings/settings_navigation.h"

#include <QMenu>
#include <QPointer>
#include <QWidget>
#include <functional>
#include <memory>
#include <optional>

namespace hopsel {

class SettingsView;

class SettingsWindowController {
  public:
    explicit SettingsWindowController(AppModel& model, std::shared_ptr<LocalKeyMonitoring> keys = nullptr);
    ~SettingsWindowController();
    SettingsWindowController(const SettingsWindowController&) = delete;
    SettingsWindowController& operator=(const SettingsWindowController&) = delete;

    /// Brings the window to the front, on the pane if one is given.
    void show(std::optional<SettingsPane> pane = std::nullopt);
    /// In a session without a panel the window has a button with the menu; null takes it away.
    void setMenu(QMenu* menu);
    bool isVisible() const { return window_ && window_->isVisible(); }
    /// Null until first shown.
    QWidget* window() const { return window_.get(); }

    /// The user closed the window.
    std::function<void()> onClosed;

  private:
    void makeWindow();
    void windowWillClose();

    AppModel& model_;
    std::shared_ptr<LocalKeyMonitoring> keys_;
    SettingsNavigation navigation_{SettingsPane::general};
    std::unique_ptr<QWidget> window_;
    QPointer<QMenu> menu_;
    SettingsView* view_ = nullptr; ///< fills the window
};

} // namespace hopsel
