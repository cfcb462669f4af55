#include "platform/linux/bus/bus_link.h"

#include "platform/linux/bus/bus_address.h"
#include "platform/linux/bus/bus_call.h"
#include "platform/linux/bus/bus_ears.h"

#include <QCoreApplication>
#include <QDBusPendingCallWatcher>
#include <algorithm>
#include <climits>
#include <filesystem>
#include <system_error>

namespace hopsel {

namespace {

using namespace std::chrono_literals;

constexpr auto interval = 2000ms;
constexpr std::chrono::milliseconds shortestGreeting = 5s, longestGreeting = 5min;
constexpr const char* localPath = "/org/freedesktop/DBus/Local";
constexpr const char* localInterface = "org.freedesktop.DBus.Local";

} // namespace

BusLink::BusLink(Where where, Return way)
    : where_(std::move(where)), way_(way), greetingPatience_(shortestGreeting) {
    again_.setInterval(interval);
    connect(&again_, &QTimer::timeout, this, &BusLink::retry);
    if (way == Return::byItself) retry();
}

BusLink::~BusLink() { end(); }

void BusLink::retry() {
    if (isGreeted_) return;
    if (ears_) {
        if (!opened_.hasExpired(greetingPatience_.count())) return;
        greetingPatience_ = std::min<std::chrono::milliseconds>(greetingPatience_ * 2, longestGreeting);
        end();
    }
    const QString address = bus_address::local(where_());
    if (!address.isEmpty() && bus_address::acceptsClients(address)) open(address);
    lookOut();
}

// A socket that comes is told by its folder. Only of one that is there and does not answer, and of one
// without a place in the file system, nothing tells.
void BusLink::lookOut() {
    if (way_ == Return::whenAsked) return;
    const QString address = isGreeted_ ? QString() : bus_address::local(where_());
    const std::filesystem::path file = bus_address::socketFile(address);
    const bool mayWatch = !file.empty() && !isOpen();
    if (mayWatch && !place_)
        place_ = std::make_unique<FolderWatch>(
            file, [this] { QMetaObject::invokeMethod(this, &BusLink::retry, Qt::QueuedConnection); });
    std::error_code ignored; // a folder that may not be entered: nothing is there for us
    const bool isAwaited = mayWatch && !std::filesystem::exists(file, ignored);
    if (!isAwaited) place_.reset();
    if (address.isEmpty() || isAwaited)
        again_.stop();
    else if (!again_.isActive())
        again_.start();
}

void BusLink::open(const QString& address) {
    static int count = 0;
    connection_ = QDBusConnection::connectToPeer(address, "hopsel-bus-" + QString::number(++count));
    ears_ = std::make_unique<BusEars>();
    if (!connection_.isConnected()) return end();
    opened_.start();
    connect(ears_.get(), &BusEars::heard, this, &BusLink::dispatch);
    connect(ears_.get(), &BusEars::ended, this, &BusLink::close);
    connection_.connect(QString(), localPath, localInterface, "Disconnected", ears_.get(),
                        SLOT(end(QDBusMessage)));
    ask(
        bus_call::toBus(QStringLiteral("Hello")), this, [this](const QDBusMessage& reply) { greet(reply); },
        INT_MAX);
}

void BusLink::greet(const QDBusMessage& reply) {
    if (!bus_call::isReply(reply, "s")) {
        end();
        return lookOut();
    }
    isGreeted_ = true;
    greetingPatience_ = shortestGreeting;
    lookOut();
    for (const auto& listener : listeners_) listen(listener->signal);
    Q_EMIT connected();
}

void BusLink::close() {
    if (!ears_) return;
    const bool wasGreeted = isGreeted_;
    end();
    lookOut();
    if (wasGreeted) Q_EMIT lost();
}

void BusLink::end() {
    ++number_;
    isGreeted_ = false;
    ears_.reset();
    const QString name = connection_.name();
    if (!name.isEmpty()) {
        // What others called may still be queued, with a bare pointer to the connection.
        if (auto* application = QCoreApplication::instance())
            QMetaObject::invokeMethod(application, [connection = connection_] {}, Qt::QueuedConnection);
        connection_ = QDBusConnection(QString());
        QDBusConnection::disconnectFromPeer(name);
    }
}

void BusLink::call(const QDBusMessage& message, const QObject* context, Answer onAnswer,
                   std::chrono::milliseconds timeout) {
    if (!isGreeted_) return;
    ask(message, context, std::move(onAnswer),
        timeout == endless ? INT_MAX : static_cast<int>(timeout.count()));
}

void BusLink::ask(const QDBusMessage& message, const QObject* context, Answer onAnswer, int milliseconds) {
    auto* watcher = new QDBusPendingCallWatcher(connection_.asyncCall(message, milliseconds), &calls_);
    connect(watcher, &QDBusPendingCallWatcher::finished, watcher, &QObject::deleteLater);
    connect(watcher, &QDBusPendingCallWatcher::finished, context,
            [this, answer = std::move(onAnswer), number = number_](const QDBusPendingCallWatcher* finished) {
                if (number == number_) answer(finished->reply());
            });
}

void BusLink::send(const QDBusMessage& message) {
    if (isGreeted_) connection_.send(message);
}

void BusLink::dispatch(const QDBusMessage& message) {
    // Whoever is told may go, and take others along.
    const std::vector<std::shared_ptr<Listener>> all = listeners_;
    for (const auto& listener : all) {
        if (!listener->handler || !listener->signal.matches(message)) continue;
        const auto handler = listener->handler;
        handler(message);
    }
}

// The library knows one hook for each kind of signal, whoever sends it; a second one is refused, which is as
// well.
void BusLink::listen(const BusSignal& signal) {
    connection_.connect(QString(), QString(), signal.interface, signal.member, ears_.get(),
                        SLOT(hear(QDBusMessage)));
    send(bus_call::toBus(QStringLiteral("AddMatch"), {signal.rule()}));
}

void BusLink::add(const std::shared_ptr<Listener>& listener) {
    listeners_.push_back(listener);
    if (isGreeted_) listen(listener->signal);
}

void BusLink::remove(const std::shared_ptr<Listener>& listener) {
    std::erase(listeners_, listener);
    listener->handler = nullptr;
    send(bus_call::toBus(QStringLiteral("RemoveMatch"), {listener->signal.rule()}));
}

BusSubscription::BusSubscription(std::shared_ptr<BusLink> bus, BusSignal signal, Handler handler)
    : bus_(std::move(bus)),
      listener_(
          std::make_shared<BusLink::Listener>(BusLink::Listener{std::move(signal), std::move(handler)})) {
    bus_->add(listener_);
}

BusSubscription::~BusSubscription() { bus_->remove(listener_); }

} // namespace hopsel
