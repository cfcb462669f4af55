#include "platform/linux/fcitx/fcitx_input_sources.h"

#include "platform/linux/fcitx/fcitx_replies.h"
#include "platform/linux/sources/platform_errors.h"

#include <algorithm>
#include <utility>

namespace hopsel {

namespace {

using namespace std::chrono_literals;

// As focus passes from one program to another, the current method may be another for a moment.
constexpr auto quiet = 3ms, atMost = 30ms;

} // namespace

FcitxInputSources::FcitxInputSources(std::shared_ptr<BusLink> sessionBus)
    : daemon_(std::move(sessionBus), [this] { takeOwner(); }),
      list_(daemon_, [this] { reportTimer_.noteChange(); }),
      current_(daemon_, [this] { takeCurrent(); }),
      profile_(FcitxProfileWatch::defaultProfile(),
               [this] {
                   if (!daemon_.owner().isEmpty()) list_.ask();
               }),
      reportTimer_(quiet, atMost, [this] { report(); }) {}

bool FcitxInputSources::isInCharge() const { return !list_.sources().empty(); }

void FcitxInputSources::takeOwner() {
    signals_.reset();
    isSelectionLost_ = selection_ != nullptr || isSelectionLost_;
    selection_.reset();
    list_.forget();
    current_.forget();
    reportTimer_.noteChange();
    if (daemon_.owner().isEmpty()) return;
    signals_ = std::make_unique<FcitxSignals>(daemon_.bus(), daemon_.owner());
    signals_->onGroupsChanged = [this] { list_.ask(); };
    signals_->onMethodShown = [this] { ask(); };
    ask();
}

void FcitxInputSources::takeCurrent() {
    if (selection_) selection_->noteCurrent(current_.method());
    reportTimer_.noteChange();
}

void FcitxInputSources::ask() {
    current_.ask();
    list_.check();
}

void FcitxInputSources::retry() {
    if (!daemon_.owner().isEmpty()) ask();
}

InputFramework::Retries FcitxInputSources::retries() const {
    if (daemon_.owner().isEmpty()) return Retries::never;
    return list_.isTold() ? Retries::whileUsed : Retries::always;
}

std::optional<std::string> FcitxInputSources::currentID() {
    if (!current_.method()) return std::nullopt;
    return fcitx::sourceID(*current_.method());
}

SelectResult FcitxInputSources::select(const std::string& id) {
    if (daemon_.owner().isEmpty()) return select_result::Failed{platform_error::frameworkGone};
    const std::vector<InputSourceInfo>& sources = list_.sources();
    const auto source = std::find_if(sources.begin(), sources.end(),
                                     [&id](const InputSourceInfo& candidate) { return candidate.id == id; });
    if (source == sources.end()) return select_result::NotFound{};
    const QString method = fcitx::methodIn(id);
    // What was read before says nothing about this selection; least of all that it has succeeded.
    current_.dropAnswers();
    if (current_.method() == method) current_.forget();
    isSelectionLost_ = false;
    selection_ = std::make_unique<FcitxSelection>(daemon_, current_, method);
    return select_result::Selected{};
}

std::optional<SelectResult> FcitxInputSources::refusal() const {
    if (isSelectionLost_) return select_result::Failed{platform_error::frameworkGone};
    return selection_ ? selection_->refusal() : std::nullopt;
}

void FcitxInputSources::report() {
    const bool isChangeOfCharge = isInCharge() != reportedInCharge_;
    const bool isChangeOfSources = list_.sources() != reportedSources_;
    std::optional<std::string> id = currentID();
    const bool isChangeOfSelected = id != reportedID_;
    const bool isChangeOfAsking = isAsking() != std::exchange(reportedAsking_, isAsking());
    reportedInCharge_ = isInCharge();
    reportedSources_ = list_.sources();
    reportedID_ = std::move(id);
    if (isChangeOfCharge && onInChargeChanged) onInChargeChanged();
    if (isChangeOfAsking && onAskingChanged) onAskingChanged();
    if (isChangeOfSources && onSourcesChanged) onSourcesChanged();
    if (isChangeOfSelected && onSelectedChanged) onSelectedChanged();
}

} // namespace hopsel
