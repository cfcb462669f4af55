#include "platform/linux/fcitx/fcitx_selection.h"

#include "platform/linux/fcitx/fcitx_replies.h"
#include "platform/linux/sources/platform_errors.h"

#include <QDBusError>
#include <chrono>
#include <utility>

namespace hopsel {

namespace {

using namespace std::chrono_literals;

constexpr auto step = 10ms;
// As long as a switch is waited for.
constexpr auto awaitedFor = 500ms;
constexpr auto withoutContextFor = 150ms;

/// Absent where the reply leaves open whether the request was carried out.
std::optional<std::int32_t> errorIn(const QDBusMessage& reply) {
    if (reply.type() != QDBusMessage::ErrorMessage) return std::nullopt;
    switch (QDBusError(reply).type()) {
    case QDBusError::NoReply:
    case QDBusError::Timeout:
    case QDBusError::TimedOut: return std::nullopt;
    case QDBusError::ServiceUnknown:
    case QDBusError::Disconnected: return platform_error::frameworkGone;
    default: return platform_error::frameworkRefused;
    }
}

} // namespace

FcitxSelection::FcitxSelection(FcitxDaemon& daemon, FcitxCurrentMethod& current, QString method)
    : daemon_(daemon), current_(current), method_(std::move(method)), end_(awaitedFor) {
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer_, &QTimer::timeout, &context_, [this] { (this->*next_)(); });
    request();
}

void FcitxSelection::request() {
    error_.reset();
    daemon_.call("SetCurrentIM", {method_}, context_,
                 [this](const QDBusMessage& reply) { error_ = errorIn(reply); });
    readBack();
}

void FcitxSelection::readBack() {
    current_.ask(context_, [this](const std::optional<QString>& method) { judge(method); });
}

void FcitxSelection::judge(const std::optional<QString>& method) {
    if (method == method_) return;
    if (error_) return refuse(*error_);
    if (method && method->isEmpty())
        return daemon_.call("State", {}, context_,
                            [this](const QDBusMessage& reply) { judgeState(fcitx::numberIn(reply)); });
    contextDeadline_.reset();
    continueWith(&FcitxSelection::readBack);
}

void FcitxSelection::judgeState(std::optional<int> state) {
    if (state != 0)
        contextDeadline_.reset();
    else if (!contextDeadline_)
        contextDeadline_ = QDeadlineTimer(withoutContextFor);
    else if (contextDeadline_->hasExpired())
        return refuse(platform_error::noInputContext);
    // The request went to nobody, so that a text field which has come since knows nothing of it.
    continueWith(&FcitxSelection::request);
}

void FcitxSelection::continueWith(void (FcitxSelection::*next)()) {
    if (end_.hasExpired()) return;
    next_ = next;
    timer_.start(step);
}

} // namespace hopsel
