// Light or dark, as the desktop has it, also when that changes while we run.
//
// Made by start-up after the application object; asks the desktop portal, whenever that comes. A session
// without a portal keeps the appearance that the toolkit found at the start.
#pragma once

#include "platform/linux/bus/bus_name.h"
#include "ui/design/colors.h"

#include <optional>

namespace hopsel {

class DesktopAppearance final {
  public:
    explicit DesktopAppearance(std::shared_ptr<BusLink> sessionBus);

    /// Reports what is known at once, and every change.
    void start();

    std::function<void(design::Appearance)> onChange;

  private:
    void ask();
    void take(const QVariant& value);
    void report(design::Appearance appearance);

    std::shared_ptr<BusLink> bus_;
    design::Appearance fallback_;
    std::optional<design::Appearance> reported_;
    std::unique_ptr<BusName> portal_; ///< once it is started
    QObject context_;                 ///< answers end with it
};

} // namespace hopsel
