// The connection to the private bus of the IBus daemon: it can be lost, and opened again.
//
// A member of the framework. Nothing here waits: the D-Bus library connects to a *bus* by waiting for its
// greeting, half a minute at the worst, in the one thread through which all connections of the program go. So
// this is a connection to a mere peer as far as the library knows, and the greeting is a call like any other.
// What arrives after the connection was closed is dropped. Main thread.
#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <functional>

namespace hopsel {

class IbusBus final : public QObject, protected QDBusContext {
    Q_OBJECT

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
    ~IbusBus() override { close(); }

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
    /// What the connection before this one said may still be on its way.
    bool isLate() const { return connection().name() != connection_.name(); }
    Q_SLOT void disconnected();
    Q_SLOT void changeEngine(const QString& engine);
    Q_SLOT void changeRegistry();

    Callbacks callbacks_;
    QDBusConnection connection_{QString()};
    unsigned openCount_ = 0; ///< tells a connection's late answers from those of the next
};

} // namespace hopsel
