#include "platform/linux/system_events/logind_watch.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <unistd.h>

namespace hopsel {

namespace {

constexpr const char* service = "org.freedesktop.login1";
constexpr const char* managerPath = "/org/freedesktop/login1";
constexpr const char* managerInterface = "org.freedesktop.login1.Manager";
constexpr const char* sessionInterface = "org.freedesktop.login1.Session";
constexpr const char* propertiesInterface = "org.freedesktop.DBus.Properties";

/// The reply's first argument, if it is one.
QVariant first(const QDBusMessage& reply) {
    return reply.type() == QDBusMessage::ReplyMessage ? reply.arguments().value(0) : QVariant();
}

QString objectPath(const QDBusMessage& reply) { return qvariant_cast<QDBusObjectPath>(first(reply)).path(); }

QVariantMap map(const QVariant& value) {
    if (!value.canConvert<QDBusArgument>()) return {};
    const auto argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != "a{sv}") return {};
    return qdbus_cast<QVariantMap>(argument);
}

} // namespace

LogindWatch::LogindWatch(const QDBusConnection& bus, SessionState& state, Callbacks callbacks)
    : bus_(bus), state_(state), callbacks_(std::move(callbacks)) {
    bus_.connect(service, managerPath, managerInterface, "PrepareForSleep", this,
                 SLOT(prepareForSleep(bool)));
    auto* watcher = new QDBusServiceWatcher(
        service, bus_,
        QDBusServiceWatcher::WatchForRegistration | QDBusServiceWatcher::WatchForUnregistration, this);
    connect(watcher, &QDBusServiceWatcher::serviceRegistered, this, [this] { findSession(); });
    connect(watcher, &QDBusServiceWatcher::serviceUnregistered, this, [this] { forgetSession(); });
    findSession();
}

void LogindWatch::prepareForSleep(bool goesToSleep) { callbacks_.onSleep(goesToSleep); }

void LogindWatch::call(const QString& path, const QString& interface, const QString& method,
                       const QVariantList& arguments, Reply reply) {
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setAutoStartService(false);
    message.setArguments(arguments);
    auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [handle = std::move(reply)](QDBusPendingCallWatcher* finished) {
                finished->deleteLater();
                handle(finished->reply());
            });
}

// A program that the user's service manager started belongs to no session; it serves the one with the
// display.
void LogindWatch::findSession() {
    const QString id = qEnvironmentVariable("XDG_SESSION_ID");
    if (id.isEmpty()) return findSessionOfProcess();
    call(managerPath, managerInterface, "GetSession", {id}, [this](const QDBusMessage& reply) {
        const QString path = objectPath(reply);
        path.isEmpty() ? findSessionOfProcess() : takeSession(path);
    });
}

void LogindWatch::findSessionOfProcess() {
    const auto process = static_cast<uint>(QCoreApplication::applicationPid());
    call(managerPath, managerInterface, "GetSessionByPID", {process}, [this](const QDBusMessage& reply) {
        const QString path = objectPath(reply);
        path.isEmpty() ? findSessionOfUser() : takeSession(path);
    });
}

void LogindWatch::findSessionOfUser() {
    call(managerPath, managerInterface, "GetUser", {uint(getuid())}, [this](const QDBusMessage& user) {
        const QString path = objectPath(user);
        if (path.isEmpty()) return;
        call(path, propertiesInterface, "Get", {"org.freedesktop.login1.User", "Display"},
             [this](const QDBusMessage& reply) {
                 const QVariant display = qvariant_cast<QDBusVariant>(first(reply)).variant();
                 if (!display.canConvert<QDBusArgument>()) return;
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
    forgetSession();
    session_ = path;
    bus_.connect(service, session_, propertiesInterface, "PropertiesChanged", this,
                 SLOT(propertiesChanged(QString, QVariantMap, QStringList)));
    readProperties();
}

void LogindWatch::forgetSession() {
    if (session_.isEmpty()) return;
    bus_.disconnect(service, session_, propertiesInterface, "PropertiesChanged", this,
                    SLOT(propertiesChanged(QString, QVariantMap, QStringList)));
    session_.clear();
}

void LogindWatch::propertiesChanged(const QString& interface, const QVariantMap& changed,
                                    const QStringList& invalidated) {
    if (interface != sessionInterface) return;
    takeProperties(changed);
    if (invalidated.contains("Active") || invalidated.contains("LockedHint")) readProperties();
}

void LogindWatch::readProperties() {
    call(session_, propertiesInterface, "GetAll", {QString(sessionInterface)},
         [this, asked = session_](const QDBusMessage& reply) {
             if (asked == session_) takeProperties(map(first(reply)));
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
