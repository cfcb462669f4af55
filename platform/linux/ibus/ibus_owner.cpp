#include "platform/linux/ibus/ibus_owner.h"

#include "platform/linux/bus/bus_call.h"

#include <utility>

namespace hopsel {

IbusOwner::IbusOwner(std::shared_ptr<BusLink> sessionBus, std::function<void()> onChanged)
    : onChanged_(std::move(onChanged)),
      ibus_(sessionBus, "org.freedesktop.IBus",
            [this] {
                set(false); // what was agreed with the last owner is void
                ask();
            }),
      fcitx_(std::move(sessionBus), "org.fcitx.Fcitx5", [this] { ask(); }) {
    ibus_.onUnowned = onChanged_;
}

// Told by their processes, since one program may hold the two names with two connections.
void IbusOwner::ask() {
    ++questions_;
    if (!ibus_.isOwned()) return set(false);
    isAsking_ = !isThere_;
    askFor(ibus_, [this](Process ibus) {
        askFor(fcitx_, [this, ibus](Process fcitx) { set(ibus && ibus != fcitx); });
    });
}

void IbusOwner::askFor(const BusName& name, std::function<void(Process)> take) {
    if (!name.isOwned()) return take(std::nullopt);
    name.bus()->call(bus_call::toBus("GetConnectionUnixProcessID", {name.owner()}), &context_,
                     [this, take = std::move(take), question = questions_](const QDBusMessage& reply) {
                         if (question == questions_) take(bus_call::numberIn(reply));
                     });
}

void IbusOwner::set(bool isThere) {
    const bool wasAsking = std::exchange(isAsking_, false);
    const bool isNothingNew = isThere == isThere_ && (isThere || !wasAsking);
    if (isNothingNew) return;
    isThere_ = isThere;
    onChanged_();
}

} // namespace hopsel
