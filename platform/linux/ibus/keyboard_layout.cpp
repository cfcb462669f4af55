#include "platform/linux/ibus/keyboard_layout.h"

#include <QDir>
#include <QFileInfo>
#include <algorithm>
#include <stdexcept>
#include <utility>

namespace hopsel {

namespace {

constexpr std::size_t mostGroups = 4; // of the X keyboard extension

/// The wanted one is the first: whatever the others are, it can be locked.
std::vector<XkbLayout> loadedTogether(const KeyboardLayout::Wanted& wanted) {
    std::vector<XkbLayout> layouts{wanted.layout};
    const auto add = [&layouts](const XkbLayout& layout) {
        const bool isThere = std::find(layouts.begin(), layouts.end(), layout) != layouts.end();
        if (!layout.layout.empty() && !isThere && layouts.size() < mostGroups) layouts.push_back(layout);
    };
    if (wanted.withLatin) add({"us", ""});
    for (const XkbLayout& layout : wanted.others) add(layout);
    return layouts;
}

} // namespace

KeyboardLayout::KeyboardLayout(Log& log) : log_(log) {
    for (QProcess* process : {&setxkbmap_, &xmodmap_}) {
        process->setStandardOutputFile(QProcess::nullDevice());
        process->setStandardErrorFile(QProcess::nullDevice());
        process->setStandardInputFile(QProcess::nullDevice());
        QObject::connect(process, &QProcess::errorOccurred, process,
                         [this, process](QProcess::ProcessError error) {
                             if (error != QProcess::FailedToStart) return;
                             const std::string name = process->program().toStdString();
                             log_.write(Log::Level::error, "keyboardLayout",
                                        name + " cannot be started: the layout stays as it is");
                         });
    }
    QObject::connect(&setxkbmap_, &QProcess::finished, &setxkbmap_, [this] { finishLoading(); });
}

KeyboardLayout::~KeyboardLayout() {
    for (QProcess* process : {&setxkbmap_, &xmodmap_}) {
        process->disconnect();
        process->kill();
        process->waitForFinished();
    }
}

void KeyboardLayout::apply(const Wanted& wanted) {
    // On Wayland the layout is the compositor's, and the X server there only follows.
    if (wanted.layout.layout.empty() || qEnvironmentVariableIsSet("WAYLAND_DISPLAY")) return;
    if (setxkbmap_.state() != QProcess::NotRunning) {
        next_ = wanted; // the groups will be others when it has ended
        return;
    }
    next_.reset(); // of a setxkbmap that could not be started
    if (connect() && !lockLoaded(wanted.layout)) load(wanted);
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
    QStringList layouts, variants;
    for (const XkbLayout& layout : loadedTogether(wanted)) {
        layouts << QString::fromStdString(layout.layout);
        variants << QString::fromStdString(layout.variant);
    }
    isWithUsersChanges_ = wanted.withUsersChanges;
    setxkbmap_.start("setxkbmap", {"-layout", layouts.join(','), "-variant", variants.join(',')});
}

void KeyboardLayout::finishLoading() {
    if (next_) {
        const Wanted wanted = *std::exchange(next_, std::nullopt);
        return apply(wanted);
    }
    if (setxkbmap_.exitStatus() != QProcess::NormalExit || setxkbmap_.exitCode() != 0) return;
    // The server keeps the number of the group that was locked among the layouts before.
    if (connect()) server_->lockGroup(0);
    if (isWithUsersChanges_) makeUsersChanges();
}

void KeyboardLayout::makeUsersChanges() {
    if (xmodmap_.state() != QProcess::NotRunning) return;
    for (const char* name : {".xmodmap", ".xmodmaprc", ".Xmodmap", ".Xmodmaprc"}) {
        const QString file = QDir::home().filePath(QString::fromLatin1(name));
        if (!QFileInfo(file).isFile()) continue;
        xmodmap_.start("xmodmap", {file});
        return;
    }
}

} // namespace hopsel
