#include "platform/linux/fcitx/fcitx_source_list.h"

#include "platform/linux/fcitx/fcitx_replies.h"

#include <utility>

namespace hopsel {

void FcitxSourceList::ask() {
    round_ = std::make_unique<QObject>();
    members_.reset();
    available_.reset();
    daemon_.call("CurrentInputMethodGroup", {}, *round_,
                 [this](const QDBusMessage& reply) { takeGroup(fcitx::textIn(reply)); });
    daemon_.call("AvailableInputMethods", {}, *round_, [this](const QDBusMessage& reply) {
        available_ = reply;
        takeParts();
    });
}

void FcitxSourceList::takeGroup(const std::optional<QString>& group) {
    if (!group) {
        round_.reset();
        return;
    }
    roundGroup_ = *group;
    daemon_.call("InputMethodGroupInfo", {roundGroup_}, *round_, [this](const QDBusMessage& reply) {
        members_ = reply;
        takeParts();
    });
}

void FcitxSourceList::takeParts() {
    if (!members_ || !available_) return;
    std::optional<std::vector<InputSourceInfo>> sources;
    if (const auto members = fcitx::membersIn(*members_)) sources = fcitx::sourcesIn(*available_, *members);
    round_.reset();
    members_.reset();
    available_.reset();
    if (!sources) return;
    isTold_ = true;
    group_ = roundGroup_;
    sources_ = std::move(*sources);
    onTold_();
}

void FcitxSourceList::check() {
    if (round_) return;
    if (!isTold_) return ask();
    round_ = std::make_unique<QObject>();
    daemon_.call("CurrentInputMethodGroup", {}, *round_, [this](const QDBusMessage& reply) {
        const std::optional<QString> group = fcitx::textIn(reply);
        round_.reset();
        if (group && *group != group_) ask();
    });
}

void FcitxSourceList::forget() {
    round_.reset();
    isTold_ = false;
    sources_.clear();
}

} // namespace hopsel
