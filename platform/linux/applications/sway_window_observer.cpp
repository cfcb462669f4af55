#include "platform/linux/applications/sway_window_observer.h"

#include "platform/linux/applications/app_identifier.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>
#include <utility>
#include <vector>

namespace hopsel {

namespace {

// A tree that is deeper than its JSON may be is refused by the reader; wide ones are limited by their bytes.
QJsonObject focusedIn(const QJsonObject& tree) {
    std::vector<QJsonObject> open{tree};
    while (!open.empty()) {
        const QJsonObject node = std::move(open.back());
        open.pop_back();
        if (node["focused"].toBool()) return node;
        for (const char* children : {"nodes", "floating_nodes"})
            for (const auto& child : node[children].toArray()) open.push_back(child.toObject());
    }
    return {};
}

/// Of a window of Wayland its name; of one of X11 what X11 says.
std::optional<std::string> identifierOf(const QJsonObject& node) {
    AppProperties properties;
    properties.kdeDesktopFile = node["app_id"].toString().toStdString();
    const QJsonObject x11 = node["window_properties"].toObject();
    properties.windowClass = x11["instance"].toString().toStdString();
    properties.windowClass += '\0' + x11["class"].toString().toStdString() + '\0';
    return appIdentifier(properties);
}

} // namespace

SwayWindowObserver::SwayWindowObserver() {
    ipc_.onOpened = [this] {
        ipc_.send(SwayIpc::subscribe, R"(["window","workspace"])");
        ask();
    };
    ipc_.onClosed = [this] {
        isAsking_ = false;
        report(std::nullopt);
    };
    ipc_.onMessage = [this](quint32 type, const QByteArray& payload) { take(type, payload); };
}

void SwayWindowObserver::start() {
    if (ipc_.isOpen()) return;
    const QString path = qEnvironmentVariable("SWAYSOCK");
    if (!path.isEmpty()) ipc_.open(path);
}

bool SwayWindowObserver::isLost() const { return !ipc_.isOpen() && qEnvironmentVariableIsSet("SWAYSOCK"); }

void SwayWindowObserver::take(quint32 type, const QByteArray& payload) {
    if (type == SwayIpc::windowEvent || type == SwayIpc::workspaceEvent) return ask();
    if (type != SwayIpc::getTree || !std::exchange(isAsking_, false)) return;
    if (isStale_) ask();
    report(identifierOf(focusedIn(QJsonDocument::fromJson(payload).object())));
    if (onWindowChange) onWindowChange();
}

// One at a time: a program that changes its title all the time is followed as fast as sway answers.
void SwayWindowObserver::ask() {
    isStale_ = isAsking_;
    if (!std::exchange(isAsking_, true)) ipc_.send(SwayIpc::getTree);
}

} // namespace hopsel
