#include "core/platform/linux/ibus/keyboard_layout.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace hopsel {

KeyboardLayout::KeyboardLayout() {
    setxkbmap_.setStandardOutputFile(QProcess::nullDevice());
    setxkbmap_.setStandardErrorFile(QProcess::nullDevice());
    setxkbmap_.setStandardInputFile(QProcess::nullDevice());
    QObject::connect(&setxkbmap_, &QProcess::finished, &setxkbmap_, [this] { finishLoading(); });
}

KeyboardLayout::~KeyboardLayout() {
    setxkbmap_.disconnect();
    setxkbmap_.kill();
    setxkbmap_.waitForFinished();
}

void KeyboardLayout::apply(const XkbLayout& layout, bool withLatin) {
    // On Wayland the layout is the compositor's, and the X server there only follows.
    if (layout.layout.empty() || qEnvironmentVariableIsSet("WAYLAND_DISPLAY")) return;
    if (setxkbmap_.state() != QProcess::NotRunning) {
        next_ = {layout, withLatin}; // the groups will be others when it has ended
        return;
    }
    next_.reset(); // of a setxkbmap that could not be started
    if (connect() && !lockLoaded(layout)) load({layout, withLatin});
}

bool KeyboardLayout::connect() {
    if (server_ && !server_->isLost()) return true;
    notifier_.reset();
    server_.reset();
    try {
        server_ = std::make_unique<XkbServer>();
    } catch (const std::runtime_error&) {
        return false; // no X server to give a layout to
    }
    areGroupsStale_ = true;
    notifier_ = std::make_unique<QSocketNotifier>(server_->fileDescriptor(), QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] { takeEvents(); });
    return true;
}

void KeyboardLayout::takeEvents() {
    areGroupsStale_ = server_->takeEvents().groups || areGroupsStale_;
    if (server_->isLost()) notifier_->setEnabled(false); // a dead descriptor is readable for ever
}

bool KeyboardLayout::lockLoaded(const XkbLayout& layout) {
    takeEvents();
    if (std::exchange(areGroupsStale_, false)) groups_ = server_->readGroups();
    const auto group = std::find_if(groups_.begin(), groups_.end(), [&layout](const XkbGroup& candidate) {
        return candidate.isLockable && candidate.layout == layout;
    });
    if (group == groups_.end()) return false;
    server_->lockGroup(group->index); // also if it seems to be: the last word on that may be on its way
    return true;
}

void KeyboardLayout::load(const Wanted& wanted) {
    QString layouts = QString::fromStdString(wanted.layout.layout);
    QString variants = QString::fromStdString(wanted.layout.variant);
    if (wanted.withLatin) {
        layouts += ",us";
        variants += ',';
    }
    setxkbmap_.start("setxkbmap", {"-layout", layouts, "-variant", variants});
}

void KeyboardLayout::finishLoading() {
    if (next_) {
        const Wanted wanted = *std::exchange(next_, std::nullopt);
        return apply(wanted.layout, wanted.withLatin);
    }
    // The server keeps the number of the group that was locked among the layouts before.
    if (setxkbmap_.exitStatus() == QProcess::NormalExit && setxkbmap_.exitCode() == 0 && connect())
        server_->lockGroup(0);
}

} // namespace hopsel
