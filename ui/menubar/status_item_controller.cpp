#include "ui/menubar/status_item_controller.h"

#include "ui/menubar/badge_renderer.h"
#include "ui/menubar/menu_builder.h"
#include "ui/settings/design/colors.h"
#include "ui/settings/design/symbols.h"

#include <QApplication>
#include <QCursor>
#include <QEvent>

namespace hopsel {

namespace {

void call(const std::function<void()>& callback) {
    if (callback) callback();
}

/// The system gives the picture its own ink. Its heights are those of the menu bar, at one and at two pixels
/// a point.
QIcon templateIcon(const StatusItemAppearance& appearance) {
    QIcon icon;
    for (const int scale : {1, 2}) {
        QPixmap picture = appearance.badge
                              ? QPixmap::fromImage(badge_renderer::wide(
                                    badge_renderer::currentAlone(*appearance.badge), Qt::black, scale))
                              : design::symbolPixmap(QString::fromStdString(appearance.symbolName), {16, 16},
                                                     Qt::black, scale);
        picture.setDevicePixelRatio(1); // the toolkit chooses by pixels
        icon.addPixmap(picture);
    }
    icon.setIsMask(true);
    return icon;
}

} // namespace

QColor StatusItemController::likelyInk() {
    const QStringList desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':');
    for (const char* desktop : {"GNOME", "Unity", "XFCE", "X-Cinnamon", "Budgie"}) {
        if (desktops.contains(QLatin1String(desktop), Qt::CaseInsensitive)) return Qt::white;
    }
    return design::isDark(QApplication::palette()) ? Qt::white : Qt::black;
}

StatusItemController::StatusItemController(AppModel& model, std::unique_ptr<TrayHosting> host, Ink ink)
    : model_(model),
      ink_(std::move(ink)),
      menu_([this] { return menu_builder::items(model_.menuState()); },
            [this](MenuAction action) { perform(action); }),
      host_(std::move(host)) {
    menu_.installEventFilter(this); // a window that hears of a new palette
    model_.observe(this, [this] { refresh(); });
    host_->start([this](TrayKind kind) { hostChanged(kind); });
}

StatusItemController::~StatusItemController() = default;

void StatusItemController::refresh() {
    menu_.refresh();
    if (!item_) return;
    // Every change crosses the bus and makes the panel draw: only what is new.
    const StatusItemAppearance appearance = model_.statusItemAppearance();
    const QColor ink = ink_();
    if (shown_ != appearance || shownInk_ != ink) {
        item_->setIcon(icon(appearance, ink));
        shown_ = appearance;
        shownInk_ = ink;
    }
    const auto source = model_.currentSourceName();
    const QString toolTip = QString::fromStdString(source ? "Hopsel, " + *source : "Hopsel");
    if (item_->toolTip() != toolTip) item_->setToolTip(toolTip);
}

QIcon StatusItemController::icon(const StatusItemAppearance& appearance, const QColor& ink) const {
    std::optional<StatusBadge> badge = appearance.badge;
    if (kind_ == TrayKind::menuBar) return templateIcon(appearance);
    // Some panels take the largest picture and shrink it to their height: two labels would be a blur.
    if (badge && kind_ == TrayKind::statusNotifier) badge = badge_renderer::currentAlone(*badge);
    QIcon icon;
    for (const int pixels : {16, 22, 24, 32, 48, 64}) {
        icon.addPixmap(badge ? QPixmap::fromImage(badge_renderer::square(*badge, pixels, ink))
                             : design::symbolPixmap(QString::fromStdString(appearance.symbolName),
                                                    {pixels, pixels}, ink, 1));
    }
    return icon;
}

void StatusItemController::perform(MenuAction action) {
    switch (action) {
    case MenuAction::quit: return call(onQuit);
    case MenuAction::openSettings: return call(onOpenSettings);
    case MenuAction::openBugReport: return call(onOpenBugReport);
    default: model_.perform(action);
    }
}

void StatusItemController::hostChanged(TrayKind kind) {
    if (kind != TrayKind::none && !item_) {
        makeItem(kind);
        host_->settleOn(kind);
    }
    const bool hasHost = kind != TrayKind::none;
    if (std::exchange(hasHost_, hasHost) != hasHost && onHostChanged) onHostChanged(hasHost);
}

void StatusItemController::makeItem(TrayKind kind) {
    kind_ = kind;
    item_ = std::make_unique<QSystemTrayIcon>();
    if (kind == TrayKind::menuBar)
        menu_.showLabels(); // and the system opens the menu itself
    else
        connect(item_.get(), &QSystemTrayIcon::activated, this,
                [this](QSystemTrayIcon::ActivationReason reason) {
                    if (reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::Context) openMenu();
                });
    item_->setContextMenu(&menu_);
    refresh();
    item_->show();
}

void StatusItemController::openMenu() {
    // With one kind of panel the toolkit has opened it for the right button already.
    if (!menu_.isVisible()) menu_.popup(QCursor::pos());
}

bool StatusItemController::eventFilter(QObject* watched, QEvent* event) {
    if (watched == &menu_ && event->type() == QEvent::PaletteChange)
        QMetaObject::invokeMethod(this, &StatusItemController::refresh, Qt::QueuedConnection);
    return QObject::eventFilter(watched, event);
}

} // namespace hopsel
