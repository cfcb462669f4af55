#include "platform/linux/gnome/gnome_extension_switch.h"

#include "platform/linux/bus/bus_call.h"

#include <QPointer>
#include <utility>

namespace hopsel {

namespace {

const QString path = QStringLiteral("/org/gnome/Shell");
const QString interface = QStringLiteral("org.gnome.Shell.Extensions");

/// The shell's numbers of what an extension may be: it runs; it is for another version.
constexpr int enabled = 1;
constexpr int outOfDate = 4;

/// Nothing for an extension that the shell does not know.
std::optional<int> stateIn(const QDBusMessage& reply) {
    if (!bus_call::isReply(reply, "a{sv}")) return std::nullopt;
    const QVariantMap told = bus_call::propertiesIn(reply.arguments().constFirst());
    bool isNumber = false;
    const double state = told.value("state").toDouble(&isNumber);
    return isNumber && state >= 0 && state < 1000 ? std::optional(static_cast<int>(state)) : std::nullopt;
}

} // namespace

GnomeExtensionSwitch::GnomeExtensionSwitch(std::shared_ptr<BusLink> sessionBus)
    : shell_(std::move(sessionBus), "org.gnome.Shell") {}

void GnomeExtensionSwitch::turnOn(const QObject* context, const std::function<void()>& onFailure) {
    tryNext({"hopsel@app.hopsel.Hopsel", "hopsel-43@app.hopsel.Hopsel"}, context, onFailure);
}

void GnomeExtensionSwitch::tryNext(QStringList names, const QObject* context,
                                   const std::function<void()>& onFailure) {
    if (!shell_.isOwned() || names.isEmpty()) return onFailure();
    const QString name = names.takeFirst();
    shell_.call(path, interface, "GetExtensionInfo", {name}, context, [=, this](const QDBusMessage& reply) {
        const std::optional<int> state = stateIn(reply);
        if (!state || *state == outOfDate) return tryNext(names, context, onFailure);
        if (*state == enabled) return onFailure();
        shell_.call(path, interface, "EnableExtension", {name}, context, [=](const QDBusMessage& answer) {
            if (!bus_call::flagIn(answer).value_or(false)) onFailure();
        });
    });
}

} // namespace hopsel
