// Whether the IBus daemon itself runs in the session: its name on the session bus has an owner, and that is
// not Fcitx5, which takes the name as well to serve IBus's clients.
//
// A member of the framework; needs the event loop. Nothing is ever started by it.
#pragma once

#include "platform/linux/bus/bus_name.h"

#include <optional>

namespace hopsel {

class IbusOwner final {
  public:
    /// `onChanged` is called from the event loop; when one owner follows another, also in between.
    IbusOwner(std::shared_ptr<BusLink> sessionBus, std::function<void()> onChanged);

    /// False until the bus has answered, and when it is lost.
    bool isThere() const { return isThere_; }
    /// False while the bus is being asked. `onChanged` tells of the end of it.
    bool isKnown() const { return ibus_.isKnown() && !isAsking_; }

  private:
    using Process = std::optional<uint>;
    void ask();
    void askFor(const BusName& name, std::function<void(Process)> take);
    void set(bool isThere);

    std::function<void()> onChanged_;
    unsigned questions_ = 0; ///< answers to all but the last are out of date
    bool isThere_ = false;
    bool isAsking_ = false; ///< whose processes they are
    BusName ibus_;
    BusName fcitx_;
    QObject context_; ///< answers end with it
};

} // namespace hopsel
