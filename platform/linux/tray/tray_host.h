// The panels of a Linux desktop: which kind there is, told only once that is certain.
//
// Owned by the status item's controller. The toolkit chooses between its two kinds when the first item is
// made and keeps to that for the life of the process, so a panel that comes a moment later and can do more is
// worth waiting for; and a panel that restarts is not worth telling of. GNOME's shell has neither; there our
// extension shows the item.
#pragma once

#include "platform/linux/gnome/gnome_extension.h"
#include "platform/linux/tray/status_notifier_watch.h"
#include "platform/linux/tray/xembed_tray_watch.h"
#include "ui/menubar/tray_hosting.h"

#include <QTimer>
#include <chrono>
#include <memory>
#include <optional>

namespace hopsel {

class TrayHost final : public TrayHosting {
  public:
    struct Patience {
        /// For a panel that does more and is about to say so.
        std::chrono::milliseconds withLess = std::chrono::seconds(1);
        /// For a panel that starts after us, or again.
        std::chrono::milliseconds withNone = std::chrono::seconds(5);
    };

    /// `bus` is the session's. `isX11`: our windows are X11 windows. `gnome` may be null.
    TrayHost(std::shared_ptr<BusLink> bus, std::shared_ptr<GnomeExtension> gnome, bool isX11,
             Patience patience);
    TrayHost(std::shared_ptr<BusLink> bus, std::shared_ptr<GnomeExtension> gnome, bool isX11)
        : TrayHost(std::move(bus), std::move(gnome), isX11, Patience()) {}

    void start(OnChange onChange) override;
    std::unique_ptr<PanelItem> makeItem(TrayKind kind, StatusMenu& menu) override;
    /// From here on only this kind counts.
    void settleOn(TrayKind kind);

  private:
    bool has(TrayKind kind) const;
    TrayKind best() const;
    std::chrono::milliseconds patienceWith(TrayKind kind) const;
    void consider();
    void tell();

    std::shared_ptr<BusLink> bus_;
    std::shared_ptr<GnomeExtension> gnome_;
    bool isX11_;
    Patience patience_;
    OnChange onChange_;
    QTimer waiting_;
    std::optional<TrayKind> told_;
    std::optional<TrayKind> only_;
    TrayKind candidate_ = TrayKind::none; ///< what is told when `waiting_` ends
    std::unique_ptr<StatusNotifierWatch> statusNotifier_;
    std::unique_ptr<XEmbedTrayWatch> xEmbed_;
};

} // namespace hopsel
