// Turns our extension on: asks the shell's own service for extensions, as its user could.
//
// A member of the key session. The shell knows the extensions that it found when the session began; of our
// two it can run one, by its version.
#pragma once

#include "platform/linux/bus/bus_name.h"

#include <QObject>
#include <QStringList>
#include <functional>
#include <memory>

namespace hopsel {

class GnomeExtensionSwitch final {
  public:
    explicit GnomeExtensionSwitch(std::shared_ptr<BusLink> sessionBus);

    /// `onFailure` is called where the shell knows neither of ours, will not turn it on, or has it on
    /// already; never once `context` is gone, or the shell while it is asked.
    void turnOn(const QObject* context, const std::function<void()>& onFailure);

  private:
    void tryNext(QStringList names, const QObject* context, const std::function<void()>& onFailure);

    BusName shell_;
};

} // namespace hopsel
