// The connection to the private bus of the IBus daemon: it can be lost, and opened again.
//
// A member of the framework. Nothing here waits: the D-Bus library connects to a *bus* by waiting for its
// greeting, half a minute at the worst, in the one thread through which all connections of the program go. So
// this is a connection to a mere peer as far as the library knows, and the greeting is a call like any other.
// What arrives after the connection was closed is dropped. Main thread.
#pragma once

#include "platform/linux/ibus/ibus_signals.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <QVariantList>
#include <functional>
#include <memory>

namespace hopsel {

class IbusBus final {
  public:
    /// All are called from the event loop.
    struct Callbacks {
        std::function<void()> onReady;
        /// Also when it never became ready. It is closed then.
        std::function<void()> onLost;
        std::function<void(const QString& engine)> onEngineChanged;
        std::function<void()> onRegistryChanged;
    };

    explicit IbusBus(Callbacks callbacks) : callbacks_(std::move(callbacks)) {}
    ~IbusBus() { close(); }
    IbusBus(const IbusBus&) = delete;
    IbusBus& operator=(const IbusBus&) = delete;

    /// One that hangs is waited for until it is closed: its backlog must not fill with attempts of ours.
    void open(const QString& address);
    void close();
    /// Open, or being opened.
    bool isOpen() const { return !connection_.name().isEmpty(); }

    using Answer = std::function<void(const QDBusMessage& reply)>;
    /// `onAnswer` gets the reply or the error; it is never called once the bus is closed.
    void call(const char* method, const QVariantList& arguments, Answer onAnswer);
    void readProperty(const char* name, Answer onAnswer);

  private:
    void send(const QDBusMessage& message, Answer onAnswer);
    void watchSignals();
    void lose();

    Callbacks callbacks_;
    QDBusConnection connection_{QString()};
    std::unique_ptr<IbusSignals> signals_; ///< while it is open
    unsigned openCount_ = 0;               ///< tells a connection's late answers from those of the next
    QObject context_;                      ///< answers end with it
};

} // namespace hopsel
