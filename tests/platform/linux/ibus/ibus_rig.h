// An X server, a session with IBus, and the framework under test on its bus.
#pragma once

#include "platform/linux/ibus/ibus_input_sources.h"
#include "session/ibus_session.h"
#include "session/x_server.h"
#include "support/fakes/engine_fakes.h"

#include <QDBusConnection>
#include <memory>

namespace hopsel::test {

class IbusRig : public session::XServer, public session::IbusSession {
  public:
    ~IbusRig() { QDBusConnection::disconnectFromBus("ibus test"); }

    const QDBusConnection& bus() const { return connection_; }
    /// A new framework on this session's bus, without waiting for it.
    std::shared_ptr<IbusInputSources> makeSources() {
        return std::make_shared<IbusInputSources>(connection_, log);
    }
    /// Lets the framework retry, as the program does every so often, until it is in charge or no longer.
    static bool become(bool isInCharge, IbusInputSources& sources);

    fakes::RecordingLog log;

  private:
    QDBusConnection connection_ =
        QDBusConnection::connectToBus(QString::fromStdString(busAddress()), "ibus test");
};

} // namespace hopsel::test
