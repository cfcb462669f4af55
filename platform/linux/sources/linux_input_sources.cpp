#include "platform/linux/sources/linux_input_sources.h"

#include "platform/linux/sources/platform_errors.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace hopsel {

namespace {

/// Daemons of a session that is still starting take their time.
constexpr std::chrono::seconds askingAtMost(5);

} // namespace

LinuxInputSources::LinuxInputSources(std::vector<std::unique_ptr<InputFramework>> frameworks,
                                     std::shared_ptr<InputSourceCatalog> fallback,
                                     std::shared_ptr<SourceLimits> limits)
    : frameworks_(std::move(frameworks)), fallback_(std::move(fallback)), limits_(std::move(limits)) {
    announcement_.setSingleShot(true);
    QObject::connect(&announcement_, &QTimer::timeout, &announcement_, [this] { announce(); });
    const auto listen = [this](InputSourceCatalog* catalog) {
        catalog->onSourcesChanged = [this, catalog] { handOn(catalog, onSourcesChanged); };
        catalog->onSelectedChanged = [this, catalog] { handOn(catalog, onSelectedChanged); };
    };
    for (const auto& framework : frameworks_) {
        listen(framework.get());
        framework->onInChargeChanged = [this] { decide(); };
        framework->onAskingChanged = [this] { noteAsking(); };
    }
    if (fallback_) listen(fallback_.get());
    if (limits_) limits_->onChanged = [this] { announcement_.start(0); };
    inCharge_ = firstInCharge();
    patience_.setSingleShot(true);
    QObject::connect(&patience_, &QTimer::timeout, &patience_, [this] { announcement_.start(0); });
    noteAsking();
}

LinuxInputSources::~LinuxInputSources() {
    for (const auto& framework : frameworks_)
        framework->onSourcesChanged = framework->onSelectedChanged = framework->onInChargeChanged =
            framework->onAskingChanged = nullptr;
    if (fallback_) fallback_->onSourcesChanged = fallback_->onSelectedChanged = nullptr; // others may own it
    if (limits_) limits_->onChanged = nullptr;
}

InputFramework* LinuxInputSources::firstInCharge() const {
    for (const auto& framework : frameworks_) {
        if (framework->isInCharge()) return framework.get();
    }
    return nullptr;
}

InputSourceCatalog* LinuxInputSources::answering() const {
    return inCharge_ != nullptr ? inCharge_ : fallback_.get();
}

std::vector<InputSourceInfo> LinuxInputSources::enabledKeyboardSources() {
    InputSourceCatalog* catalog = answering();
    if (catalog == nullptr) return {};
    std::vector<InputSourceInfo> sources = catalog->enabledKeyboardSources();
    if (limits_)
        for (InputSourceInfo& source : sources) source.limit = limits_->limitOf(source.id);
    return sources;
}

std::optional<std::string> LinuxInputSources::currentID() {
    InputSourceCatalog* catalog = answering();
    return catalog != nullptr ? catalog->currentID() : std::nullopt;
}

SelectResult LinuxInputSources::select(const std::string& id) {
    InputSourceCatalog* catalog = answering();
    if (catalog == nullptr) return select_result::NotFound{};
    SelectResult result = catalog->select(id);
    if (std::holds_alternative<select_result::Selected>(result)) {
        hasRequest_ = true;
        isRequestLost_ = false;
    }
    return result;
}

std::optional<SelectResult> LinuxInputSources::refusal() const {
    if (isRequestLost_) return select_result::Failed{platform_error::frameworkGone};
    // What the one in charge was told by others before it came is no answer to us.
    const InputSourceCatalog* catalog = answering();
    return hasRequest_ && catalog != nullptr ? catalog->refusal() : std::nullopt;
}

bool LinuxInputSources::hasBeenCurrent() const {
    const InputSourceCatalog* catalog = answering();
    return hasRequest_ && catalog != nullptr && catalog->hasBeenCurrent();
}

SwitchHindrance LinuxInputSources::hindrance(std::int32_t code) const {
    switch (code) {
    case platform_error::connectionLost:
    case platform_error::frameworkGone: return SwitchHindrance::notReachable;
    case platform_error::groupNotLockable: return SwitchHindrance::notSwitchable;
    case platform_error::noInputContext: return SwitchHindrance::noTextField;
    case platform_error::desktopCannotSwitch: return SwitchHindrance::notPossibleHere;
    default: return SwitchHindrance::unknown;
    }
}

bool LinuxInputSources::needsRetry() const {
    switch (retries()) {
    case InputFramework::Retries::never: return false;
    case InputFramework::Retries::whileUsed: return roundsLeft_ > 0;
    case InputFramework::Retries::always: return true;
    }
    return true;
}

InputFramework::Retries LinuxInputSources::retries() const {
    using enum InputFramework::Retries;
    InputFramework::Retries most = limits_ && limits_->needsCheck() ? whileUsed : never;
    for (const auto& framework : frameworks_) {
        most = std::max(most, framework->retries());
        if (framework.get() == inCharge_) break; // those behind it change nothing
    }
    return most;
}

void LinuxInputSources::retry() {
    if (roundsLeft_ > 0) --roundsLeft_;
    for (const auto& framework : frameworks_) framework->retry();
    if (limits_) limits_->check();
}

void LinuxInputSources::askCurrent() {
    if (inCharge_ != nullptr) inCharge_->askCurrent();
}

void LinuxInputSources::decide() {
    InputFramework* next = firstInCharge();
    if (next == inCharge_) return;
    inCharge_ = next;
    if (std::exchange(hasRequest_, false)) isRequestLost_ = true;
    announcement_.start(0);
    noteAsking();
    if (onInChargeChanged) onInChargeChanged();
}

bool LinuxInputSources::isAnyAsked() const {
    for (const auto& framework : frameworks_) {
        if (framework.get() == inCharge_) return false; // those behind it change nothing
        if (framework->isAsking()) return true;
    }
    return false;
}

void LinuxInputSources::noteAsking() {
    const bool isAsked = isAnyAsked();
    if (isAsked == std::exchange(isAsked_, isAsked)) return;
    isAsked ? patience_.start(askingAtMost) : patience_.stop();
    announcement_.start(0);
}

void LinuxInputSources::handOn(const InputSourceCatalog* from, const std::function<void()>& change) const {
    // The announcement says it as well.
    if (from == answering() && !announcement_.isActive() && change) change();
}

void LinuxInputSources::announce() const {
    if (onSourcesChanged) onSourcesChanged();
    if (onSelectedChanged) onSelectedChanged();
}

} // namespace hopsel
