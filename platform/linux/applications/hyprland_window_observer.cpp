#include "platform/linux/applications/hyprland_window_observer.h"

#include "platform/linux/applications/app_identifier.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QString>
#include <utility>

namespace hopsel {

namespace {

/// Nothing in front is an empty object.
std::optional<std::string> identifierIn(const QByteArray& answer) {
    const QJsonObject window = QJsonDocument::fromJson(answer).object();
    const std::string name = window["class"].toString().toStdString();
    AppProperties properties;
    if (window["xwayland"].toBool())
        properties.windowClass = name + '\0' + name + '\0';
    else
        properties.kdeDesktopFile = name;
    return appIdentifier(properties);
}

} // namespace

HyprlandWindowObserver::HyprlandWindowObserver() {
    ipc_.onOpened = [this] { ask(); };
    ipc_.onClosed = [this] {
        isAsking_ = false;
        report(std::nullopt);
    };
    // Its data cannot be taken apart where a name has a comma.
    ipc_.onEvent = [this](const QByteArray& name, const QByteArray& /*data*/) {
        if (name == "activewindow") ask();
    };
}

bool HyprlandWindowObserver::isLost() const {
    return !ipc_.isOpen() && qEnvironmentVariableIsSet("HYPRLAND_INSTANCE_SIGNATURE");
}

// One at a time: a program that changes its title all the time is followed as fast as Hyprland answers.
void HyprlandWindowObserver::ask() {
    isStale_ = isAsking_;
    if (std::exchange(isAsking_, true)) return;
    ipc_.ask("j/activewindow", [this](const QByteArray& answer) { take(answer); });
}

void HyprlandWindowObserver::take(const QByteArray& answer) {
    isAsking_ = false;
    if (isStale_) ask();
    report(identifierIn(answer));
    if (onWindowChange) onWindowChange();
}

} // namespace hopsel
