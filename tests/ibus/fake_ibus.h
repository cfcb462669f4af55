// A daemon in IBus's place that answers as the test says: on a private bus of its own, with the name on the
// session's bus held by this process.
#pragma once

#include "session/private_bus.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <functional>
#include <map>
#include <memory>

namespace hopsel::test {

/// A description as the daemon sends it.
struct FakeEngine {
    QString id, name, language, layout, variant;
};

class FakeIbus final : public QDBusVirtualObject {
  public:
    /// What is to be sent for the call; an invalid message for none.
    using Reply = std::function<QDBusMessage(const QDBusMessage& call)>;

    /// From here on $IBUS_ADDRESS names it.
    FakeIbus();
    ~FakeIbus() override;

    /// By the member: "Get", "GetEnginesByNames", "SetGlobalEngine". Those that are missing are not answered.
    std::map<QString, Reply> replies;
    int callCount = 0;

    /// A daemon as it should be, with these engines and the first of them current.
    void behave(const QList<FakeEngine>& engines);
    static Reply returning(const QVariant& value);
    /// Makes the engine that is asked for current.
    Reply obeying();
    static Reply failing(const QString& name, const QString& message);
    static QVariant variant(const FakeEngine& engine);
    static QVariantList variants(const QList<FakeEngine>& engines);

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;
    QString introspect(const QString&) const override { return {}; }

  private:
    session::PrivateBus bus_{session::PrivateBus::Kind::system};
    QDBusConnection connection_;
};

} // namespace hopsel::test
