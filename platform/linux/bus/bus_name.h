// One program that is found by its name on a bus: whether it is there, what it tells, and calls to it whose
// answers count only while it is.
//
// A member of whoever asks it. When the bus is lost nobody owns the name, until the bus is back and says who
// does. Nothing is ever started by it.
#pragma once

#include "platform/linux/bus/bus_link.h"

namespace hopsel {

class BusName {
  public:
    /// `onOwnerChanged` is called from the event loop; when one owner follows another, also in between. A
    /// unique name owns itself for as long as its program is connected.
    BusName(std::shared_ptr<BusLink> bus, QString name, std::function<void()> onOwnerChanged = nullptr);
    BusName(const BusName&) = delete;
    BusName& operator=(const BusName&) = delete;

    /// The owner's unique name, empty if there is none or nobody has said yet.
    const QString& owner() const { return owner_; }
    bool isOwned() const { return !owner_.isEmpty(); }
    /// The bus has said who owns the name, if anybody, or there is no bus.
    bool isKnown() const { return isKnown_ || !bus_->isOpen(); }
    /// Called from the event loop when the bus's first word is that nobody owns it.
    std::function<void()> onUnowned;
    const std::shared_ptr<BusLink>& bus() const { return bus_; }

    /// Hears the signal from whoever owns the name. The sender is filled in here.
    void listen(BusSignal signal, BusSubscription::Handler handler);

    /// Asks the owner. `onAnswer` gets the reply or the error, a missing reply included; it is never called
    /// once the owner is another, or none, or `context` is gone.
    void call(const QString& path, const QString& interface, const QString& method,
              const QVariantList& arguments, const QObject* context, BusLink::Answer onAnswer,
              std::chrono::milliseconds timeout = BusLink::patience);

  private:
    void ask();
    void setOwner(const QString& owner);

    std::shared_ptr<BusLink> bus_;
    QString name_;
    std::function<void()> onOwnerChanged_;
    QString owner_;
    bool isOwnerTold_ = false;
    bool isKnown_ = false;
    unsigned ownerCount_ = 0; ///< tells an owner from the next, even if it is the same again
    BusSubscription changes_;
    std::vector<std::unique_ptr<BusSubscription>> heard_;
    QObject context_;
};

} // namespace hopsel
