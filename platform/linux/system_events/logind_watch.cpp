#include "platform/linux/system_events/logind_watch.h"

#include "platform/linux/bus/bus_call.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusObjectPath>
#include <unistd.h>

namespace hopsel {

namespace {

constexpr const char* managerPath = "/org/freedesktop/login1";
constexpr const char* managerInterface = "org.freedesktop.login1.Manager";
constexpr const char* sessionInterface = "org.freedesktop.login1.Session";
constexpr const char* propertiesInterface = "org.freedesktop.DBus.Properties";

} // namespace

LogindWatch::LogindWatch(std::shared_ptr<BusLink> systemBus, SessionState& state, Callbacks callbacks)
    : state_(state),
      callbacks_(std::move(callbacks)),
      logind_(std::move(systemBus), "org.freedesktop.login1", [this] { followOwner(); }) {
    logind_.listen(
        {"", managerPath, managerInterface, "PrepareForSleep", "b", ""},
        [this](const QDBusMessage& signal) { callbacks_.onSleep(signal.arguments().constFirst().toBool()); });
}

void LogindWatch::followOwner() {
    session_.clear();
    changes_.reset();
    if (logind_.isOwned()) findSession();
}

void LogindWatch::call(const QString& path, const QString& interface, const QString& method,
                       const QVariantList& arguments, BusLink::Answer onAnswer) {
    logind_.call(path, interface, method, arguments, &context_, std::move(onAnswer));
}

// A program that the user's service manager started belongs to no session; it serves the one with the
// display.
void LogindWatch::findSession() {
    const QString id = qEnvironmentVariable("XDG_SESSION_ID");
    if (id.isEmpty()) return findSessionOfProcess();
    call(managerPath, managerInterface, "GetSession", {id}, [this](const QDBusMessage& reply) {
        const QString path = bus_call::pathIn(reply);
        path.isEmpty() ? findSessionOfProcess() : takeSession(path);
    });
}

void LogindWatch::findSessionOfProcess() {
    const auto process = static_cast<uint>(QCoreApplication::applicationPid());
    call(managerPath, managerInterface, "GetSessionByPID", {process}, [this](const QDBusMessage& reply) {
        const QString path = bus_call::pathIn(reply);
        path.isEmpty() ? findSessionOfUser() : takeSession(path);
    });
}

void LogindWatch::findSessionOfUser() {
    call(managerPath, managerInterface, "GetUser", {uint(getuid())}, [this](const QDBusMessage& user) {
        const QString path = bus_call::pathIn(user);
        if (path.isEmpty()) return;
        call(path, propertiesInterface, "Get", {"org.freedesktop.login1.User", "Display"},
             [this](const QDBusMessage& reply) {
                 const QVariant display = bus_call::variantIn(reply);
                 if (display.userType() != qMetaTypeId<QDBusArgument>()) return;
                 const auto argument = display.value<QDBusArgument>();
                 if (argument.currentSignature() != "(so)") return;
                 QString id;
                 QDBusObjectPath session;
                 argument.beginStructure();
                 argument >> id >> session;
                 argument.endStructure();
                 takeSession(session.path());
             });
    });
}

void LogindWatch::takeSession(const QString& path) {
    if (path.isEmpty() || path == "/" || path == session_) return;
    session_ = path;
    changes_ = std::make_unique<BusSubscription>(
        logind_.bus(),
        BusSignal{logind_.owner(), session_, propertiesInterface, "PropertiesChanged", "sa{sv}as", ""},
        [this](const QDBusMessage& signal) { propertiesChanged(signal); });
    readProperties();
}

void LogindWatch::propertiesChanged(const QDBusMessage& signal) {
    if (signal.arguments().at(0).toString() != sessionInterface) return;
    takeProperties(bus_call::propertiesIn(signal.arguments().at(1)));
    const QStringList invalidated = signal.arguments().at(2).toStringList();
    if (invalidated.contains("Active") || invalidated.contains("LockedHint")) readProperties();
}

void LogindWatch::readProperties() {
    call(session_, propertiesInterface, "GetAll", {QString(sessionInterface)},
         [this, asked = session_](const QDBusMessage& reply) {
             if (asked == session_ && bus_call::isReply(reply, "a{sv}"))
                 takeProperties(bus_call::propertiesIn(reply.arguments().constFirst()));
         });
}

void LogindWatch::takeProperties(const QVariantMap& properties) {
    if (take(properties.value("Active"), state_.isActive) == News::changed)
        callbacks_.onActive(*state_.isActive);
    switch (take(properties.value("LockedHint"), state_.isLocked)) {
    case News::none: break;
    case News::first: callbacks_.onLocked(false); break;
    case News::changed: callbacks_.onLocked(true); break;
    }
}

LogindWatch::News LogindWatch::take(const QVariant& value, std::optional<bool>& known) {
    if (value.typeId() != QMetaType::Bool || known == value.toBool()) return News::none;
    const News news = known ? News::changed : News::first;
    known = value.toBool();
    return news;
}

} // namespace hopsel
