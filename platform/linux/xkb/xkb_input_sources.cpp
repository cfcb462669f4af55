#include "platform/linux/xkb/xkb_input_sources.h"

#include "platform/linux/sources/platform_errors.h"

#include <algorithm>
#include <stdexcept>

namespace hopsel {

namespace {

using namespace std::chrono_literals;

// A layout change comes in several steps, by a program that waits for the server in between.
constexpr auto sourcesQuiet = 30ms, sourcesAtMost = 300ms;
// Programs that type for the user flip the group for a few microseconds.
constexpr auto selectedQuiet = 3ms, selectedAtMost = 30ms;

constexpr auto confirmationAtMost = 1ms;

constexpr const char* sourceType = "XKBGroup";

} // namespace

XkbInputSources::XkbInputSources()
    : sourcesTimer_(sourcesQuiet, sourcesAtMost, [this] { reportSources(); }),
      selectedTimer_(selectedQuiet, selectedAtMost, [this] { reportSelected(); }),
      lossTimer_(0ms, 0ms, [this] {
          if (isLost() && onLost) onLost();
      }) {
    connect();
    reportedGroups_ = groups_;
    reportedID_ = currentID();
}

void XkbInputSources::connect() {
    auto server = std::make_unique<XkbServer>();
    notifier_.reset();
    server_ = std::move(server);
    notifier_ = std::make_unique<QSocketNotifier>(server_->fileDescriptor(), QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] { takeEvents(); });
    lossTimer_.cancel();
    readGroups();
}

bool XkbInputSources::reconnect() {
    if (!isLost()) return true;
    try {
        connect();
    } catch (const std::runtime_error&) {
        return false; // no server yet
    }
    sourcesTimer_.noteChange();
    return !isLost();
}

std::vector<InputSourceInfo> XkbInputSources::enabledKeyboardSources() {
    takeEvents();
    if (areGroupsStale_) readGroups();
    std::vector<XkbLayout> layouts;
    layouts.reserve(groups_.size());
    for (const XkbGroup& group : groups_) layouts.push_back(group.layout);
    std::vector<XkbLayoutDescription> descriptions = registry_.describe(layouts);

    std::vector<InputSourceInfo> sources;
    sources.reserve(groups_.size());
    for (std::size_t i = 0; i < groups_.size(); ++i) {
        const XkbGroup& group = groups_[i];
        std::string name = std::move(descriptions[i].name);
        if (name.empty()) name = group.serverName.empty() ? group.id : group.serverName;
        sources.push_back(
            {group.id, std::move(name), sourceType, std::move(descriptions[i].languages), group.isLockable});
    }
    return sources;
}

std::optional<std::string> XkbInputSources::currentID() {
    takeEvents();
    if (isLost()) return std::nullopt;
    const int locked = server_->lockedGroup();
    const auto group = std::find_if(groups_.begin(), groups_.end(), [locked](const XkbGroup& candidate) {
        return candidate.index == locked;
    });
    if (group == groups_.end()) return std::nullopt;
    return group->id;
}

SelectResult XkbInputSources::select(const std::string& id) {
    takeEvents();
    if (areGroupsStale_) readGroups();
    if (isLost()) return select_result::Failed{platform_error::connectionLost};
    const auto group = std::find_if(groups_.begin(), groups_.end(),
                                    [&id](const XkbGroup& candidate) { return candidate.id == id; });
    if (group == groups_.end()) return select_result::NotFound{};
    if (!group->isLockable) return select_result::Failed{platform_error::groupNotLockable};
    const bool isChange = server_->lockedGroup() != group->index;
    server_->lockGroup(group->index);
    // The server's word is here in some 20 µs. Waiting that moment saves a turn of the event loop, in which
    // the next key would have to wait.
    if (isChange) server_->waitForNews(confirmationAtMost);
    if (isLost()) {
        noteLoss();
        return select_result::Failed{platform_error::connectionLost};
    }
    return select_result::Selected{};
}

void XkbInputSources::takeEvents() {
    const XkbServer::News news = server_->takeEvents();
    if (news.groups) {
        areGroupsStale_ = true;
        sourcesTimer_.noteChange();
    }
    if (news.locked) selectedTimer_.noteChange();
    if (isLost()) noteLoss();
}

void XkbInputSources::readGroups() {
    areGroupsStale_ = false;
    std::vector<XkbGroup> groups = server_->readGroups();
    if (!isLost()) groups_ = std::move(groups);
    takeEvents(); // the answers brought events along, of which the descriptor will not tell
}

void XkbInputSources::noteLoss() {
    if (!notifier_->isEnabled()) return;
    notifier_->setEnabled(false); // a dead descriptor is readable for ever
    lossTimer_.noteChange();
}

void XkbInputSources::reportSources() {
    takeEvents();
    if (areGroupsStale_ && !sourcesTimer_.isPending()) readGroups();
    if (sourcesTimer_.isPending()) return; // more has just arrived: the burst goes on
    if (groups_ != reportedGroups_) {
        reportedGroups_ = groups_;
        if (onSourcesChanged) onSourcesChanged();
    }
    reportSelected();
}

void XkbInputSources::reportSelected() {
    std::optional<std::string> id = currentID();
    // While the list is out of date, the locked group's number may stand for another source already.
    if (isLost() || sourcesTimer_.isPending() || id == reportedID_) return;
    reportedID_ = std::move(id);
    if (onSelectedChanged) onSelectedChanged();
}

} // namespace hopsel
