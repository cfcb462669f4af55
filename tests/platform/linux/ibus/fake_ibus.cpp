#include "platform/linux/ibus/fake_ibus.h"

#include <QDBusVariant>

namespace hopsel::test {

static QDBusArgument& operator<<(QDBusArgument& argument, const FakeEngine& engine) {
    const QString none;
    argument.beginStructure();
    argument << QString("IBusEngineDesc") << QVariantMap() << engine.id << engine.name << none
             << engine.language << none << none << none << engine.layout << 1U << none << none << none
             << engine.variant << none << none << none << none;
    argument.endStructure();
    return argument;
}
static const QDBusArgument& operator>>(const QDBusArgument& argument, FakeEngine&) {
    return argument; // NOLINT(bugprone-return-const-ref-from-parameter)
}

FakeIbus::FakeIbus()
    : PrivateBus(Kind::system), PlayedObject(address(), "org.freedesktop.IBus", "/org/freedesktop/IBus") {
    qDBusRegisterMetaType<FakeEngine>();
    setenv("IBUS_ADDRESS", address().c_str(), 1);
}

Answer FakeIbus::obeying() {
    return [this](const QDBusMessage& call) {
        signal("/org/freedesktop/IBus", "org.freedesktop.IBus", "GlobalEngineChanged", call.arguments());
        return call.createReply();
    };
}

QVariant FakeIbus::variant(const FakeEngine& engine) {
    return QVariant::fromValue(QDBusVariant(QVariant::fromValue(engine)));
}

QVariantList FakeIbus::variants(const QList<FakeEngine>& engines) {
    QVariantList list;
    for (const FakeEngine& engine : engines) list << QVariant::fromValue(engine);
    return list;
}

void FakeIbus::behave(const QList<FakeEngine>& engines) {
    answers = {{"Get", replyWith(variant(engines.constFirst()))},
               {"GetEnginesByNames", replyWith(variants(engines))},
               {"SetGlobalEngine", obeying()}};
}

} // namespace hopsel::test
