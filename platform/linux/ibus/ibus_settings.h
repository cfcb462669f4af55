// What the user has set for IBus, and when that changes.
//
// A member of the framework. The storage's own signal on the session bus tells of changes; where that is
// missing, `read` finds them.
#pragma once

#include "platform/linux/bus/bus_link.h"
#include "platform/linux/dconf/stored_settings.h"
#include "platform/linux/xkb/xkb_groups.h"

#include <QStringList>
#include <functional>
#include <vector>

namespace hopsel {

class IbusSettings final {
  public:
    struct Values {
        QStringList engines;            ///< those the user switches between, in their order, each once
        bool keepsSystemLayout = false; ///< engines leave the keyboard layout as it is
        bool runsXmodmap = false;       ///< after a layout was loaded, for the user's own changes
        std::vector<XkbLayout> layoutsWithoutLatin; ///< an empty variant stands for all of them
        friend bool operator==(const Values&, const Values&) = default;
    };

    /// `onChanged` is called from the event loop or by `read`.
    IbusSettings(std::shared_ptr<BusLink> sessionBus, std::function<void()> onChanged);

    const Values& values() const { return values_; }
    void read();

  private:
    Values stored();

    std::function<void()> onChanged_;
    StoredSettings general_{"org.freedesktop.ibus.general"};
    Values values_;
    BusSubscription changes_;
};

} // namespace hopsel
