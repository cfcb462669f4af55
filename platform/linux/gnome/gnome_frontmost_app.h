// The application whose window has the focus in GNOME's shell, as our extension tells.
//
// Owned by the platform. Absent while the extension is not there.
#pragma once

#include "core/platform/frontmost_app_observing.h"
#include "platform/linux/gnome/gnome_extension.h"

#include <QObject>
#include <memory>
#include <optional>
#include <string>

namespace hopsel {

class GnomeFrontmostApp final : public FrontmostAppObserving {
  public:
    explicit GnomeFrontmostApp(std::shared_ptr<GnomeExtension> extension);

    void start() override;

  private:
    void take(std::optional<std::string> name);

    std::shared_ptr<GnomeExtension> extension_;
    std::optional<std::string> name_;
    bool isStarted_ = false;
    QObject context_; ///< what the extension tells ends with it
};

} // namespace hopsel
