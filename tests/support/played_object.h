// A service that a test plays on a private bus: it answers what the test says, late, wrongly or never.
//
// Has a connection of its own, so that it can die. Owned by the test; destroy it before its bus.
#pragma once

#include "support/qt_waiting.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVirtualObject>
#include <map>
#include <tuple>

namespace hopsel::test {

/// A structure of these fields, as the bus has it.
template <class... Fields>
struct Row : std::tuple<Fields...> {
    using std::tuple<Fields...>::tuple;
};
template <class... Fields>
QDBusArgument& operator<<(QDBusArgument& out, const Row<Fields...>& row) {
    out.beginStructure();
    std::apply([&out](const Fields&... fields) { (out << ... << fields); },
               static_cast<const std::tuple<Fields...>&>(row));
    out.endStructure();
    return out;
}
// Never called, but Qt wants it, of this shape.
template <class... Fields>
const QDBusArgument& operator>>(const QDBusArgument& in, Row<Fields...>&) {
    return in; // NOLINT(bugprone-return-const-ref-from-parameter)
}
template <class... Fields>
QVariant inVariant(const QList<Row<Fields...>>& rows) {
    qDBusRegisterMetaType<Row<Fields...>>();
    qDBusRegisterMetaType<QList<Row<Fields...>>>();
    return QVariant::fromValue(rows);
}

/// What is to be sent for a call; an invalid message for nothing.
using Answer = std::function<QDBusMessage(const QDBusMessage& call)>;

template <class... Values>
Answer replyWith(const Values&... values) {
    return [reply = QVariantList{QVariant(values)...}](const QDBusMessage& call) {
        return call.createReply(reply);
    };
}
inline Answer replyWithError(const QString& text = "played") {
    return [text](const QDBusMessage& call) {
        return call.createErrorReply("org.freedesktop.DBus.Error.Failed", text);
    };
}

class PlayedObject : public QDBusVirtualObject {
  public:
    /// Without a name it can only be found by who has heard its signals.
    PlayedObject(const std::string& busAddress, const QString& name, const QString& path)
        : name_(name),
          bus_(QDBusConnection::connectToBus(QString::fromStdString(busAddress),
                                             "played " + QString::number(++made))) {
        bus_.registerVirtualObject(path, this, QDBusConnection::SubPath);
        if (!name_.isEmpty()) appear();
    }
    ~PlayedObject() override { die(); }

    std::map<QString, Answer> answers; ///< by method; kept waiting where there is none
    std::map<QString, int> calls;
    std::vector<QDBusMessage> waiting;

    void appear() { bus_.interface()->registerService(name_, QDBusConnectionInterface::QueueService); }
    void disappear() { bus_.unregisterService(name_); }
    void die() {
        const QString connection = bus_.name();
        bus_ = QDBusConnection(QString());
        QDBusConnection::disconnectFromBus(connection);
    }
    void send(const QDBusMessage& message) const { bus_.send(message); }
    void signal(const QString& path, const QString& interface, const QString& member,
                const QVariantList& arguments) const {
        auto message = QDBusMessage::createSignal(path, interface, member);
        message.setArguments(arguments);
        send(message);
    }
    void answerWaiting(std::size_t index, const QVariant& value) const {
        send(waiting.at(index).createReply(value));
    }
    bool isAsked(const QString& method, int count = 1) {
        return runLoopUntil([&] { return calls[method] >= count; });
    }

    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& call, const QDBusConnection&) override {
        ++calls[call.member()];
        const auto answer = answers.find(call.member());
        if (answer == answers.end())
            waiting.push_back(call);
        else if (const auto reply = answer->second(call); reply.type() != QDBusMessage::InvalidMessage)
            send(reply);
        return true;
    }

  private:
    static inline int made = 0;
    QString name_;
    QDBusConnection bus_;
};

} // namespace hopsel::test
