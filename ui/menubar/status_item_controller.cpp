#include "ui/menubar/status_item_controller.h"

#include "model/menu/menu_builder.h"

#include <QEvent>

namespace hopsel {

namespace {

void call(const std::function<void()>& callback) {
    if (callback) callback();
}

} // namespace

StatusItemController::StatusItemController(AppModel& model, std::unique_ptr<TrayHosting> host)
    : model_(model),
      menu_([this] { return menu_builder::items(model_.menuState()); },
            [this](MenuAction action) { perform(action); },
            {[this] { return model_.sourceChoices(); },
             [this](const std::string& id) { model_.selectSource(id); }}),
      host_(std::move(host)) {
    menu_.installEventFilter(this); // a window that hears of a new palette
    model_.observe(this, [this] { refresh(); });
    host_->start([this](TrayKind kind) { hostChanged(kind); });
}

StatusItemController::~StatusItemController() = default;

void StatusItemController::refresh() {
    menu_.refresh();
    if (!item_) return;
    item_->show(model_.statusItemAppearance());
    std::string name = "Hopsel";
    if (const auto source = model_.currentSourceName()) name += ", " + *source;
    if (const StatusLine status = model_.statusLine(); status != StatusLine::ok)
        name += ", " + menu_builder::statusTitle(status);
    item_->setName(name);
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
        item_ = host_->makeItem(kind, menu_);
        refresh();
    }
    const bool hasHost = kind != TrayKind::none;
    if (std::exchange(hasHost_, hasHost) != hasHost && onHostChanged) onHostChanged(hasHost);
}

bool StatusItemController::eventFilter(QObject* watched, QEvent* event) {
    if (watched == &menu_ && event->type() == QEvent::PaletteChange)
        QMetaObject::invokeMethod(this, &StatusItemController::refresh, Qt::QueuedConnection);
    return QObject::eventFilter(watched, event);
}

} // namespace hopsel
