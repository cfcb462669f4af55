#include "platform/linux/kde_keys/kde_listen_source.h"

#include "core/platform/tap_failure.h"

#include <chrono>
#include <utility>

namespace hopsel {

namespace {

using namespace std::chrono_literals;

constexpr auto lookInterval = 2000ms;

} // namespace

KdeListenSource::KdeListenSource(std::shared_ptr<EventSource> helper, std::function<bool()> canDoWithout)
    : helper_(std::move(helper)), canDoWithout_(std::move(canDoWithout)) {
    helper_->onEvent = [this](const RawEvent& event) {
        if (isStarted_ && onEvent) onEvent(event);
    };
    helper_->onDisabled = [this](bool reenabled) {
        if (!isStarted_) return;
        isStarted_ = reenabled;
        const auto tell = onDisabled;
        if (tell) tell(reenabled);
    };
    looking_.setInterval(lookInterval);
    QObject::connect(&looking_, &QTimer::timeout, &looking_, [this] { look(); });
}

KdeListenSource::~KdeListenSource() {
    helper_->onEvent = nullptr;
    helper_->onDisabled = nullptr;
    stop();
}

void KdeListenSource::start() {
    if (isStarted_) return;
    try {
        helper_->start();
        hears_ = true;
    } catch (const TapFailure&) {
        if (!canDoWithout_()) throw;
        hears_ = false;
        looking_.start();
    }
    isStarted_ = true;
}

void KdeListenSource::stop() {
    isStarted_ = false;
    looking_.stop();
    helper_->stop();
}

void KdeListenSource::look() {
    try {
        helper_->start();
    } catch (const TapFailure&) {
        return;
    }
    stop();
    const auto tell = onDisabled;
    if (tell) tell(false);
}

} // namespace hopsel
