// GNOME's input sources through our extension of its shell, which can switch them.
//
// In charge while the extension answers on the session bus and says that it can switch; otherwise
// `GnomeSources` lists what the settings hold. Identifiers are those of the X server's layouts and of IBus's
// engines ("xkb:kr+kr104", "ibus:hangul"), so rules survive a change of session or desktop. The extension's
// description is extension/app.hopsel.Shell1.xml; a source that it tells to be current is in force.
//
// Made by start-up, owned by the session's catalog; needs the event loop. Main thread.
#pragma once

#include "core/platform/log.h"
#include "platform/linux/bus/bus_name.h"
#include "platform/linux/desktops/remembered_framework.h"

#include <QObject>
#include <memory>
#include <string>

namespace hopsel {

class GnomeShell final : public RememberedFramework {
  public:
    /// `log` must outlive it, and is told what the extension says has failed in it.
    GnomeShell(std::shared_ptr<BusLink> sessionBus, Log& log);

    SelectResult select(const std::string& id) override;
    /// Also registers anew where the extension would not have us: another copy of the program had it.
    void retry() override;

    /// The extension's, empty while it does not answer.
    const std::string& extensionVersion() const { return version_; }

  private:
    void extensionChanged();
    void call(const char* method, const QVariantList& arguments, BusLink::Answer onAnswer);
    void registerAsPeer();
    void takeRegistration(const QDBusMessage& reply);
    void takeSources(const QDBusMessage& signal);
    void takeCurrent(const QString& id);

    Log& log_;
    std::string version_;
    bool isRegistering_ = false;
    unsigned requestCount_ = 0; ///< only the last request can be refused
    BusName extension_;
    QObject context_; ///< answers end with it
};

} // namespace hopsel
