// The menu of the status item: the description of a menu as items that can be clicked.
//
// Owned by the status item's controller. What it shows is read afresh each time it opens, and whenever
// `refresh` is called, because some panels show what they were given last without asking. Items are kept
// as long as the menu keeps its shape: a panel refers to them by identifiers, and a click must not go to an
// item that has just been replaced.
//
// A panel that draws the menu itself gets texts, check marks and the status line's dot, but no colours. The
// system menu of macOS takes widgets: there every line that only informs is a label of ours (header, current
// source, rules, status); lines that can be clicked, check marks and separators are the system's own.
#pragma once

#include "model/menu/menu_model.h"

#include <QMenu>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace hopsel {

class StatusMenu final : public QMenu {
  public:
    using Read = std::function<std::vector<MenuItemSpec>()>;
    using OnAction = std::function<void(MenuAction)>;
    /// The menu of input sources below this one.
    struct Sources {
        std::function<std::vector<MenuSource>()> read;
        std::function<void(const std::string& id)> select;
    };

    StatusMenu(Read read, OnAction onAction, Sources sources);

    void refresh();
    /// As if it had been clicked.
    void perform(MenuAction action);
    /// Likewise, in the menu of input sources.
    void choose(const std::string& id);
    /// What it shows.
    const std::vector<MenuItemSpec>& lines() const { return shown_; }
    const std::vector<MenuSource>& sources() const { return shownSources_; }
    /// In how the menu shows it: names of sources and rules come from elsewhere, so on one line, which ends.
    static QString plainText(const std::string& text);
    /// Behind which of `lines` the menu of sources stands: the one that names the current one.
    static std::size_t placeOfSources(const std::vector<MenuItemSpec>& lines);
    /// From here on lines that only inform are widgets. For menus that take them.
    void showLabels();

  protected:
    void initStyleOption(QStyleOptionMenuItem* option, const QAction* action) const override;

  private:
    void rebuild(const std::vector<MenuItemSpec>& specs);
    QAction* addItem(const MenuItemSpec& spec);
    void refreshSources();
    void rebuildSources();
    void refreshLater();

    Read read_;
    OnAction onAction_;
    Sources sources_;
    std::vector<MenuItemSpec> shown_;
    QList<QAction*> items_; ///< one for each line shown; the menu has the menu of sources as well
    std::vector<MenuSource> shownSources_;
    std::unique_ptr<QMenu> sourceMenu_; ///< while there are any
    bool hasLabels_ = false;
};

} // namespace hopsel
