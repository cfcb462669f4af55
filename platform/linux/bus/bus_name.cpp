#include "platform/linux/bus/bus_name.h"

#include "platform/linux/bus/bus_call.h"

#include <QPointer>
#include <utility>

namespace hopsel {

namespace {

const QString busItself = QStringLiteral("org.freedesktop.DBus");

BusSignal ownerChanges(const QString& name) {
    return {busItself,
            QStringLiteral("/org/freedesktop/DBus"),
            busItself,
            QStringLiteral("NameOwnerChanged"),
            QStringLiteral("sss"),
            name};
}

} // namespace

BusName::BusName(std::shared_ptr<BusLink> bus, QString name, std::function<void()> onOwnerChanged)
    : bus_(std::move(bus)),
      name_(std::move(name)),
      onOwnerChanged_(std::move(onOwnerChanged)),
      changes_(bus_, ownerChanges(name_), [this](const QDBusMessage& signal) {
          isOwnerTold_ = isKnown_ = true;
          setOwner(signal.arguments().at(2).toString());
      }) {
    QObject::connect(bus_.get(), &BusLink::connected, &context_, [this] { ask(); });
    QObject::connect(bus_.get(), &BusLink::lost, &context_, [this] { setOwner(QString()); });
    ask();
}

// The watch came before the question, so that no change falls between them.
void BusName::ask() {
    isOwnerTold_ = false;
    bus_->call(bus_call::toBus(QStringLiteral("GetNameOwner"), {name_}), &context_,
               [this](const QDBusMessage& reply) {
                   // A change that was told of is newer than any answer, or the same.
                   const auto owner = bus_call::textIn(reply);
                   const bool wasKnown = std::exchange(isKnown_, true);
                   if (!isOwnerTold_ && owner) return setOwner(*owner);
                   if (!wasKnown && !isOwned() && onUnowned) onUnowned();
               });
}

// The bus knows at each moment who owns the name, so that nothing is missed of one that has just come; but
// what another rule of ours lets through comes here as well.
void BusName::listen(BusSignal signal, BusSubscription::Handler handler) {
    signal.sender = name_;
    heard_.push_back(std::make_unique<BusSubscription>(
        bus_, std::move(signal), [this, handler = std::move(handler)](const QDBusMessage& told) {
            if (isOwned() && told.service() == owner_) handler(told);
        }));
}

void BusName::call(const QString& path, const QString& interface, const QString& method,
                   const QVariantList& arguments, const QObject* context, BusLink::Answer onAnswer,
                   std::chrono::milliseconds timeout) {
    if (owner_.isEmpty()) return;
    bus_->call(
        bus_call::method({owner_, path}, interface, method, arguments), context,
        [this, onAnswer = std::move(onAnswer), count = ownerCount_,
         guard = QPointer<const QObject>(&context_)](const QDBusMessage& reply) {
            if (guard && count == ownerCount_) onAnswer(reply);
        },
        timeout);
}

void BusName::setOwner(const QString& owner) {
    if (owner == owner_) return;
    const bool isReplaced = !owner_.isEmpty() && !owner.isEmpty();
    if (isReplaced) {
        const QPointer<QObject> guard(&context_);
        setOwner(QString());
        if (!guard) return;
    }
    ++ownerCount_;
    owner_ = owner;
    // Whoever is told may let go of this.
    if (const auto tell = onOwnerChanged_) tell();
}

} // namespace hopsel
