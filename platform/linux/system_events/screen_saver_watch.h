// The screen savers of the desktops: is one active? Each is asked when it is found, and tells the rest.
//
// Owned by the system-event observer. Each is heard under its own name alone; one that dies, or whose bus is
// lost, leaves the screen open, whatever it said last.
#pragma once

#include "platform/linux/bus/bus_name.h"

#include <QSet>

namespace hopsel {

class ScreenSaverWatch final {
  public:
    ScreenSaverWatch(const std::shared_ptr<BusLink>& sessionBus, std::function<void(bool isActive)> onActive);

  private:
    void ask(BusName& saver, const QString& name, const QString& path);
    void set(const QString& saver, bool isActive);

    std::function<void(bool)> onActive_;
    QSet<QString> active_; ///< names of the savers that are active
    std::vector<std::unique_ptr<BusName>> savers_;
    QObject context_; ///< of what is asked
};

} // namespace hopsel
