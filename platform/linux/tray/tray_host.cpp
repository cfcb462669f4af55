#include "platform/linux/tray/tray_host.h"

#include "platform/linux/tray/gnome_indicator.h"
#include "platform/linux/tray/tray_item.h"
#include "ui/menubar/status_menu.h"

#include <stdexcept>

namespace hopsel {

TrayHost::TrayHost(std::shared_ptr<BusLink> bus, std::shared_ptr<GnomeExtension> gnome, bool isX11,
                   Patience patience)
    : bus_(std::move(bus)), gnome_(std::move(gnome)), isX11_(isX11), patience_(patience) {
    waiting_.setSingleShot(true);
    QObject::connect(&waiting_, &QTimer::timeout, &waiting_, [this] { tell(); });
}

void TrayHost::start(OnChange onChange) {
    onChange_ = std::move(onChange);
    if (isX11_) {
        try {
            xEmbed_ = std::make_unique<XEmbedTrayWatch>([this] { consider(); });
        } catch (const std::runtime_error&) {
            xEmbed_ = nullptr; // no server, no such panel
        }
    }
    if (gnome_) gnome_->observe(&waiting_, [this] { consider(); });
    statusNotifier_ = std::make_unique<StatusNotifierWatch>(bus_, [this] { consider(); });
}

std::unique_ptr<PanelItem> TrayHost::makeItem(TrayKind kind, StatusMenu& menu) {
    settleOn(kind);
    if (kind == TrayKind::shell) return std::make_unique<GnomeIndicator>(gnome_, menu);
    return std::make_unique<TrayItem>(kind, menu);
}

void TrayHost::settleOn(TrayKind kind) {
    only_ = kind;
    consider();
}

bool TrayHost::has(TrayKind kind) const {
    switch (kind) {
    case TrayKind::none: return true;
    case TrayKind::statusNotifier: return statusNotifier_->hasHost().value_or(false);
    case TrayKind::shell: return gnome_ && gnome_->can("indicator");
    case TrayKind::xEmbed: return xEmbed_ && xEmbed_->hasHost();
    case TrayKind::menuBar: return false;
    }
    return false;
}

TrayKind TrayHost::best() const {
    for (const TrayKind kind : {TrayKind::statusNotifier, TrayKind::shell, TrayKind::xEmbed}) {
        if (has(kind) && only_.value_or(kind) == kind) return kind;
    }
    return TrayKind::none;
}

std::chrono::milliseconds TrayHost::patienceWith(TrayKind kind) const {
    if (kind == TrayKind::none) return patience_.withNone;
    if (kind != TrayKind::statusNotifier && !only_) return patience_.withLess;
    return std::chrono::milliseconds(0);
}

void TrayHost::consider() {
    if (!statusNotifier_ || !statusNotifier_->hasHost()) return; // the first answer is still to come
    const TrayKind kind = best();
    if (told_ == kind) {
        waiting_.stop();
    } else if (!waiting_.isActive() || candidate_ != kind) {
        candidate_ = kind;
        waiting_.start(patienceWith(kind));
    }
}

void TrayHost::tell() {
    told_ = candidate_;
    onChange_(candidate_);
}

} // namespace hopsel
