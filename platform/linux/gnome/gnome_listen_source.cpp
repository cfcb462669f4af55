#include "platform/linux/gnome/gnome_listen_source.h"

#include "core/platform/tap_failure.h"

namespace hopsel {

namespace {

std::string failureOf(const GnomeExtension& extension) {
    if (extension.isBusy()) return "another copy of the program has GNOME's extension \"Hopsel\"";
    if (extension.isOurs()) return "this GNOME does not let its extension \"Hopsel\" hear keys";
    return "GNOME's extension \"Hopsel\" is not enabled";
}

} // namespace

GnomeListenSource::GnomeListenSource(std::shared_ptr<GnomeExtension> extension)
    : extension_(std::move(extension)) {
    extension_->observe(&context_, [this] { extensionChanged(); });
}

void GnomeListenSource::start() {
    if (isStarted_) return;
    failure_.clear();
    if (!extension_->isAsked() && !extension_->can("taps")) {
        failure_ = failureOf(*extension_);
        throw TapFailure(TapFailure::Kind::creationFailed, failure_);
    }
    isStarted_ = true;
    listen();
}

void GnomeListenSource::heard(const RawEvent& event) const {
    if (isStarted_ && onEvent) onEvent(event);
}

void GnomeListenSource::startOver() {
    if (isStarted_) listen();
}

void GnomeListenSource::listen() {
    extension_->call("Listen", {true}, &context_, [this](const QDBusMessage& reply) {
        if (reply.type() == QDBusMessage::ErrorMessage) lost();
    });
}

void GnomeListenSource::stopListening() {
    if (!std::exchange(isStarted_, false)) return;
    extension_->call("Listen", {false}, &context_, [](const QDBusMessage& /*reply*/) {});
}

void GnomeListenSource::extensionChanged() {
    if (!isStarted_ || extension_->isAsked()) return;
    extension_->can("taps") ? listen() : lost();
}

void GnomeListenSource::lost() {
    if (!std::exchange(isStarted_, false)) return;
    if (onDisabled) onDisabled(false);
}

} // namespace hopsel
