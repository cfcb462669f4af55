#include "ui/menubar/status_item_controller.h"

#include "ui/menubar/badge_renderer.h"
#include "ui/menubar/status_menu.h"
#include "ui/settings/design/symbols.h"

#include <QApplication>
#include <QCursor>

namespace hopsel {

namespace {

// What panels ask for, at one and at two pixels a point.
constexpr int sides[] = {16, 22, 24, 32, 48, 64};

/// The panel's colours cannot be asked for; panels mostly go with the desktop.
QColor ink() {
    return design::isDark(QApplication::palette()) ? QColor(Qt::white) : QColor(0x20, 0x20, 0x24);
}

} // namespace

StatusItemController::StatusItemController(AppModel& model, const QDBusConnection& bus)
    : model_(model), host_(bus) {
    connect(&menu_, &QMenu::aboutToShow, this, [this] {
        status_menu::rebuild(menu_, model_.menuState(), [this](MenuAction action) { click(action); });
    });
    host_.onChange = [this](TrayHost::Kind kind) { takeHost(kind); };
    model_.observe(this, [this] { refresh(); });
}

StatusItemController::~StatusItemController() = default;

void StatusItemController::start() { host_.start(); }

// Each panel gets an item of its own: one that outlived its panel might talk to the wrong kind.
void StatusItemController::takeHost(TrayHost::Kind kind) {
    item_.reset();
    if (kind != TrayHost::Kind::none) {
        // Panels that draw the menu themselves read it before it opens for the first time.
        status_menu::rebuild(menu_, model_.menuState(), [this](MenuAction action) { click(action); });
        item_ = std::make_unique<QSystemTrayIcon>();
        item_->setContextMenu(&menu_);
        connect(item_.get(), &QSystemTrayIcon::activated, this,
                [this](QSystemTrayIcon::ActivationReason reason) {
                    if (reason == QSystemTrayIcon::Trigger) menu_.popup(QCursor::pos());
                });
        refresh();
        item_->show();
    }
    if (onHostChanged) onHostChanged(kind != TrayHost::Kind::none);
}

void StatusItemController::refresh() {
    if (!item_) return;
    item_->setIcon(icon());
    const auto source = model_.currentSourceName();
    item_->setToolTip(source ? "Hopsel, " + QString::fromStdString(*source) : QString("Hopsel"));
}

QIcon StatusItemController::icon() const {
    const StatusItemAppearance appearance = model_.statusItemAppearance();
    QIcon icon;
    for (const int side : sides) {
        icon.addPixmap(appearance.badge ? badge_renderer::squarePixmap(*appearance.badge, side, ink())
                                        : design::symbolPixmap(QString::fromStdString(appearance.symbolName),
                                                               {side, side}, ink(), 1));
    }
    return icon;
}

void StatusItemController::click(MenuAction action) {
    switch (action) {
    case MenuAction::quit:
        if (onQuit) onQuit();
        break;
    case MenuAction::openSettings:
        if (onOpenSettings) onOpenSettings();
        break;
    case MenuAction::openBugReport:
        if (onOpenBugReport) onOpenBugReport();
        break;
    default: model_.perform(action);
    }
}

} // namespace hopsel
