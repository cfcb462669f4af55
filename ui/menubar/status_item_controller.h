// The item in the desktop's panel, the program's one permanent face.
//
// It shows the state as a symbol or as a badge, and opens the menu with either button. Made by start-up with
// the model, which outlives it. The item itself is made when the desktop first has a panel for it; it then
// stays, and joins the panel again by itself if that restarts. While there is none, `menu` has to be
// reached from a window.
//
// What the toolkit does not let us do: an item made for one kind of panel never appears on the other kind, so
// a desktop that changes kinds while the program runs counts as having no panel.
#pragma once

#include "model/app_model.h"
#include "ui/menubar/status_menu.h"
#include "ui/menubar/tray_hosting.h"

#include <QObject>
#include <functional>
#include <memory>
#include <optional>

namespace hopsel {

class StatusItemController final : public QObject {
  public:
    StatusItemController(AppModel& model, std::unique_ptr<TrayHosting> host);
    ~StatusItemController() override;

    std::function<void()> onOpenSettings;
    std::function<void()> onOpenBugReport;
    std::function<void()> onQuit;

    /// Is the item to be seen? False also until that is known.
    bool hasHost() const { return hasHost_.value_or(false); }
    bool knowsHost() const { return hasHost_.has_value(); }
    /// Called with the first answer, which takes some seconds if it is no, and at every change.
    std::function<void(bool)> onHostChanged;

    /// Absent until the desktop first has a panel.
    const PanelItem* item() const { return item_.get(); }
    /// The item's menu, for a button in a window.
    QMenu* menu() { return &menu_; }

    void refresh();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void perform(MenuAction action);
    void hostChanged(TrayKind kind);

    AppModel& model_;
    StatusMenu menu_;
    std::unique_ptr<PanelItem> item_;
    std::optional<bool> hasHost_;
    std::unique_ptr<TrayHosting>
        host_; ///< the last, so that nothing is called back into the half of an object
};

} // namespace hopsel
