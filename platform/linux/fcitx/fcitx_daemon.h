// Fcitx5 on the session bus: is it there, and calls to it.
//
// Owned by the input sources, together with everyone who calls through it. Nothing here starts Fcitx5: calls
// go to the one that owns the name at that moment, by its unique name. Asks without waiting; main thread.
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QString>
#include <QVariantList>
#include <functional>

namespace hopsel {

class FcitxDaemon {
  public:
    using ReplyHandler = std::function<void(const QDBusMessage& reply)>;

    /// `onOwnerChanged` is called from the event loop.
    FcitxDaemon(const QDBusConnection& bus, std::function<void()> onOwnerChanged);
    FcitxDaemon(const FcitxDaemon&) = delete;
    FcitxDaemon& operator=(const FcitxDaemon&) = delete;

    const QDBusConnection& bus() const { return bus_; }
    /// Its unique name; empty while there is no Fcitx5.
    const QString& owner() const { return owner_; }
    /// A bus that is lost tells nobody: notices that.
    void checkBus();

    /// Hands over the reply, or an error in its place, unless `context` has been destroyed by then.
    void call(const QString& method, const QVariantList& arguments, const QObject& context,
              ReplyHandler onReply);

  private:
    void send(QDBusMessage message, const QObject& context, ReplyHandler onReply);
    void setOwner(const QString& owner);

    QDBusConnection bus_;
    std::function<void()> onOwnerChanged_;
    QString owner_;
    bool isOwnerKnown_ = false;
    QObject calls_; ///< owns what waits for replies
    QDBusServiceWatcher watcher_;
};

} // namespace hopsel
