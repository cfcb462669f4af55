#include "platform/linux/gnome/gnome_extension.h"

#include "platform/linux/base/told_text.h"
#include "platform/linux/bus/bus_call.h"

#include <QDBusArgument>
#include <utility>

namespace hopsel {

namespace {

const QString path = QStringLiteral("/app/hopsel/Shell");
const QString interface = QStringLiteral("app.hopsel.Shell1");
const QString errors = QStringLiteral("app.hopsel.Shell1.Error.");

} // namespace

GnomeExtension::GnomeExtension(std::shared_ptr<BusLink> sessionBus, Log& log)
    : extension_(std::move(sessionBus), "app.hopsel.Shell", [this] { ownerChanged(); }) {
    extension_.onUnowned = [this] { tell(); };
    listen("Fault", "s", &context_, [&log](const QDBusMessage& signal) {
        log.write(Log::Level::error, "Extension",
                  "GNOME's extension: " + told_text::plain(signal.arguments().constFirst().toString()));
    });
}

void GnomeExtension::observe(const QObject* context, std::function<void()> onChange) {
    observers_.push_back({context, std::move(onChange)});
}

void GnomeExtension::listen(const char* signal, const char* signature, const QObject* context,
                            BusSubscription::Handler handler) {
    extension_.listen({"", path, interface, signal, signature, ""},
                      [context = QPointer(context), handler = std::move(handler)](const QDBusMessage& told) {
                          if (context) handler(told);
                      });
}

void GnomeExtension::call(const char* method, const QVariantList& arguments, const QObject* context,
                          BusLink::Answer onAnswer) {
    extension_.call(path, interface, method, arguments, context, std::move(onAnswer));
}

QString GnomeExtension::error(const QDBusMessage& reply) {
    const QString name = reply.type() == QDBusMessage::ErrorMessage ? reply.errorName() : QString();
    return name.startsWith(errors) ? name.mid(errors.size()) : name;
}

void GnomeExtension::retry() {
    if (extension_.isOwned() && !isOurs_) registerAsPeer();
}

void GnomeExtension::ownerChanged() {
    isOurs_ = isRegistering_ = isBusy_ = false;
    version_.clear();
    capabilities_.clear();
    registration_.clear();
    extension_.isOwned() ? registerAsPeer() : tell();
}

void GnomeExtension::registerAsPeer() {
    if (std::exchange(isRegistering_, true)) return;
    call("Register", {}, &context_, [this](const QDBusMessage& reply) { takeRegistration(reply); });
}

void GnomeExtension::takeRegistration(const QDBusMessage& reply) {
    isRegistering_ = false; // refused: `retry` asks again
    isBusy_ = error(reply) == "Busy";
    if (bus_call::isReply(reply, "sa{sb}a(ssss)s")) {
        isOurs_ = true;
        registration_ = reply.arguments();
        version_ = told_text::plain(registration_[0].toString());
        registration_[1].value<QDBusArgument>() >> capabilities_;
    }
    tell();
}

void GnomeExtension::tell() const {
    for (const Observer& observer : observers_)
        if (observer.context) observer.onChange();
}

} // namespace hopsel
