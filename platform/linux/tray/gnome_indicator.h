// The status item in the top bar of GNOME's shell, which our extension draws from a description.
//
// Owned by the status item's controller; the menu outlives it. The extension forgets it with the lock screen
// and when it is turned off, and is told anew when it is back. At most one description is on its way: of many
// changes while the shell is busy it draws the last.
#pragma once

#include "platform/linux/gnome/gnome_extension.h"
#include "ui/menubar/menu_description.h"
#include "ui/menubar/panel_item.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <memory>
#include <optional>
#include <vector>

namespace hopsel {

class GnomeIndicator final : public PanelItem {
  public:
    GnomeIndicator(std::shared_ptr<GnomeExtension> extension, StatusMenu& menu);

    void show(const StatusItemAppearance& appearance) override;
    void setName(const std::string& name) override;

  private:
    struct Description {
        QString name;
        QString symbol;
        QStringList labels;
        uint current = 0;
        std::vector<MenuLine> lines;
        friend bool operator==(const Description&, const Description&) = default;
    };
    void extensionChanged();
    void sendIfNew();
    void clicked(const QString& key, const QString& token);

    std::shared_ptr<GnomeExtension> extension_;
    StatusMenu& menu_;
    Description wanted_;
    std::optional<Description> sent_; ///< none where the extension shows nothing, or it is not known what
    bool isSending_ = false;
    QObject context_; ///< answers end with it
};

} // namespace hopsel
