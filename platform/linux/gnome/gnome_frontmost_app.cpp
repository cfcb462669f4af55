#include "platform/linux/gnome/gnome_frontmost_app.h"

#include "core/platform/remote_apps.h"
#include "platform/linux/base/told_text.h"

#include <QDBusMessage>
#include <QStringList>
#include <algorithm>
#include <utility>

namespace hopsel {

namespace {

/// The first that says that the window shows another computer; else the first of all.
std::optional<std::string> nameIn(const QStringList& told) {
    constexpr qsizetype most = 8;
    std::optional<std::string> first;
    for (const QString& text : told.first(std::min(most, told.size()))) {
        std::string name = told_text::plain(text);
        if (name.empty()) continue;
        if (remote_apps::isRemote(name)) return name;
        if (!first) first = std::move(name);
    }
    return first;
}

} // namespace

GnomeFrontmostApp::GnomeFrontmostApp(std::shared_ptr<GnomeExtension> extension)
    : extension_(std::move(extension)) {
    extension_->listen("FrontChanged", "as", &context_, [this](const QDBusMessage& signal) {
        take(nameIn(signal.arguments().constFirst().toStringList()));
    });
    extension_->observe(&context_, [this] {
        if (!extension_->isOurs()) take(std::nullopt);
    });
}

void GnomeFrontmostApp::start() {
    if (!std::exchange(isStarted_, true) && onChange) onChange(name_);
}

void GnomeFrontmostApp::take(std::optional<std::string> name) {
    if (name == name_) return;
    name_ = std::move(name);
    if (isStarted_ && onChange) onChange(name_);
}

} // namespace hopsel
