// GNOME's input sources through our extension of its shell, which can switch them.
//
// In charge while the extension answers on the session bus and says that it can switch; otherwise
// `GnomeSources` lists what the settings hold. Identifiers are those of the X server's layouts and of IBus's
// engines ("xkb:kr+kr104", "ibus:hangul"), so rules survive a change of session or desktop. A source that the
// extension tells to be current is in force.
//
// Made by start-up, owned by the session's catalog.
#pragma once

#include "platform/linux/desktops/remembered_framework.h"
#include "platform/linux/gnome/gnome_extension.h"

#include <QObject>
#include <memory>
#include <string>

namespace hopsel {

class GnomeShell final : public RememberedFramework {
  public:
    explicit GnomeShell(std::shared_ptr<GnomeExtension> extension);

    SelectResult select(const std::string& id) override;
    /// Also registers anew where the extension would not have us: another copy of the program had it.
    void retry() override { extension_->retry(); }
    Retries retries() const override { return extension_->needsRetry() ? Retries::always : Retries::never; }

  private:
    void extensionChanged();
    void takeSources(const QDBusMessage& signal);
    void takeCurrent(const QString& id);

    std::shared_ptr<GnomeExtension> extension_;
    unsigned requestCount_ = 0; ///< only the last request can be refused
    QObject context_;           ///< answers end with it, and whatever the extension tells
};

} // namespace hopsel
