// A message bus: taken up when it is there, taken up again when it was lost, and never waited for.
//
// Shared by all who listen and ask on that bus; outlived by none of them. The D-Bus library connects to a
// *bus* by waiting for its greeting, half a minute at the worst, in the one thread through which all
// connections of the program go. So this is a connection to a mere peer as far as the library knows; the
// greeting is a call like any other, what is to be delivered is asked of the bus here, and whatever arrives
// goes through one place, which hands a listener only what looks as it said (`BusSignal`). Late answers of a
// connection that was lost are dropped.
#pragma once

#include "platform/linux/bus/bus_signal.h"
#include "platform/linux/files/folder_watch.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <chrono>
#include <functional>
#include <memory>
#include <vector>

namespace hopsel {

class BusEars;

class BusLink final : public QObject {
    Q_OBJECT

  public:
    using Where = std::function<QString()>;
    enum class Return {
        byItself,  ///< when the bus comes
        whenAsked, ///< by `retry` alone
    };
    /// `where` is asked each time; an empty answer says that there is no such bus.
    explicit BusLink(Where where, Return way = Return::byItself);
    ~BusLink() override;
    BusLink(const BusLink&) = delete;
    BusLink& operator=(const BusLink&) = delete;

    /// The bus has greeted us.
    bool isConnected() const { return isGreeted_; }
    /// Connected, or waiting for the greeting.
    bool isOpen() const { return ears_ != nullptr; }
    /// There is none, and the clock alone tells when to look again.
    bool isPolling() const { return again_.isActive(); }
    /// Looks for the bus if it is not open. One that does not greet is tried again after ever longer times:
    /// its backlog must not fill with attempts of ours.
    void retry();
    /// Ends the connection, without a word to anyone but `lost` if it was there.
    void close();

    /// Tells of both from the event loop. Those who listen need neither.
    Q_SIGNAL void connected();
    Q_SIGNAL void lost();

    using Answer = std::function<void(const QDBusMessage& reply)>;
    static constexpr std::chrono::milliseconds patience{
        5000}; ///< a desktop that is starting may well take a second
    static constexpr std::chrono::milliseconds endless{0}; ///< the end of the connection ends the wait
    /// `onAnswer` gets the reply or an error in its place, unless `context` or the connection is gone by
    /// then; never called if there is no connection.
    void call(const QDBusMessage& message, const QObject* context, Answer onAnswer,
              std::chrono::milliseconds timeout = patience);
    void send(const QDBusMessage& message);
    /// For objects that others call.
    QDBusConnection& connection() { return connection_; }

  private:
    friend class BusSubscription;
    struct Listener {
        BusSignal signal;
        std::function<void(const QDBusMessage&)> handler;
    };
    void open(const QString& address);
    void ask(const QDBusMessage& message, const QObject* context, Answer onAnswer, int milliseconds);
    void greet(const QDBusMessage& reply);
    void end();
    void lookOut();
    void dispatch(const QDBusMessage& message);
    void listen(const BusSignal& signal);
    void add(const std::shared_ptr<Listener>& listener);
    void remove(const std::shared_ptr<Listener>& listener);

    Where where_;
    Return way_;
    QTimer again_;
    std::unique_ptr<FolderWatch> place_; ///< while there is no socket
    QDBusConnection connection_{QString()};
    std::unique_ptr<BusEars> ears_; ///< of the connection
    unsigned number_ = 0;           ///< of the connection
    bool isGreeted_ = false;
    QElapsedTimer opened_;
    std::chrono::milliseconds greetingPatience_;
    std::vector<std::shared_ptr<Listener>> listeners_;
    QObject calls_; ///< owns what waits for answers
};

/// Hears one kind of signal, on this connection to the bus and on all that follow.
class BusSubscription {
  public:
    using Handler = std::function<void(const QDBusMessage& signal)>;
    BusSubscription(std::shared_ptr<BusLink> bus, BusSignal signal, Handler handler);
    ~BusSubscription();
    BusSubscription(const BusSubscription&) = delete;
    BusSubscription& operator=(const BusSubscription&) = delete;

  private:
    std::shared_ptr<BusLink> bus_;
    std::shared_ptr<BusLink::Listener> listener_;
};

} // namespace hopsel
