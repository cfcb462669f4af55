// Our extension of GNOME's shell, as this program finds it on the session bus: registers with it when it
// comes, and says what it can do.
//
// Shared by those who use it: input sources, keys, and whatever else the shell is needed for. What it offers
// is described in extension/app.hopsel.Shell1.xml. It comes and goes with the shell, with the lock screen
// (which has no extensions) and with the user's wish. Made by start-up; needs the event loop.
#pragma once

#include "core/platform/log.h"
#include "platform/linux/bus/bus_name.h"

#include <QMap>
#include <QObject>
#include <QPointer>
#include <QVariantList>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace hopsel {

class GnomeExtension final {
  public:
    /// `log` must outlive it, and is told what the extension says has failed in it.
    GnomeExtension(std::shared_ptr<BusLink> sessionBus, Log& log);

    /// It has taken us as its peer.
    bool isOurs() const { return isOurs_; }
    /// It may be there: the bus or the extension has not answered yet.
    bool isAsked() const { return isRegistering_ || !extension_.isKnown(); }
    /// It is there, and another copy of the program has it.
    bool isBusy() const { return isBusy_; }
    /// Its own, empty while it is not ours.
    const std::string& version() const { return version_; }
    bool can(const char* capability) const { return capabilities_.value(QLatin1String(capability)); }
    /// What it answered when it took us; empty while it is not ours.
    const QVariantList& registration() const { return registration_; }

    /// `onChange` is called from the event loop whenever it became ours or is ours no longer, and once it is
    /// known that it is not there, in the order of asking. Nothing more once `context` is gone, here and
    /// below.
    void observe(const QObject* context, std::function<void()> onChange);
    /// Hears one of its signals.
    void listen(const char* signal, const char* signature, const QObject* context,
                BusSubscription::Handler handler);
    /// `onAnswer` gets the reply or an error, unless the extension is gone by then.
    void call(const char* method, const QVariantList& arguments, const QObject* context,
              BusLink::Answer onAnswer);
    /// Registers anew where the extension would not have us.
    void retry();
    bool needsRetry() const { return extension_.isOwned() && !isOurs_; }

    /// The last word of the error that it answered with; empty for anything else.
    static QString error(const QDBusMessage& reply);

  private:
    struct Observer {
        QPointer<const QObject> context;
        std::function<void()> onChange;
    };
    void ownerChanged();
    void registerAsPeer();
    void takeRegistration(const QDBusMessage& reply);
    void tell() const;

    bool isOurs_ = false;
    bool isRegistering_ = false;
    bool isBusy_ = false;
    std::string version_;
    QMap<QString, bool> capabilities_;
    QVariantList registration_;
    std::vector<Observer> observers_;
    BusName extension_;
    QObject context_; ///< answers end with it
};

} // namespace hopsel
