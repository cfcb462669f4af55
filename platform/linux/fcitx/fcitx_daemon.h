// Fcitx5 on the session bus: is it there, and calls to it.
//
// Owned by the input sources, together with everyone who calls through it. Nothing here starts Fcitx5: calls
// go to the one that owns the name at that moment, by its unique name. Asks without waiting.
#pragma once

#include "platform/linux/bus/bus_name.h"

namespace hopsel {

class FcitxDaemon {
  public:
    /// `onOwnerChanged` is called from the event loop.
    FcitxDaemon(std::shared_ptr<BusLink> bus, const std::function<void()>& onOwnerChanged)
        : name_(std::move(bus), QStringLiteral("org.fcitx.Fcitx5"), onOwnerChanged) {
        name_.onUnowned = onOwnerChanged;
    }

    const std::shared_ptr<BusLink>& bus() const { return name_.bus(); }
    /// Its unique name; empty while there is no Fcitx5.
    const QString& owner() const { return name_.owner(); }
    /// The bus has told whether there is one, or there is no bus. `onOwnerChanged` tells of it.
    bool isOwnerKnown() const { return name_.isKnown(); }

    /// Hands over the reply, or an error in its place, unless `context` or this Fcitx5 is gone by then.
    void call(const QString& method, const QVariantList& arguments, const QObject& context,
              BusLink::Answer onReply) {
        name_.call(QStringLiteral("/controller"), QStringLiteral("org.fcitx.Fcitx.Controller1"), method,
                   arguments, &context, std::move(onReply));
    }

  private:
    BusName name_;
};

} // namespace hopsel
