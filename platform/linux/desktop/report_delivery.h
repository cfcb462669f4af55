// Hands a bug report to the user: a file that is then shown in the file manager, the clipboard, a new mail.
//
// Owned by the application model; needs the widgets' application object. Asking for the file's name runs the
// event loop, everything else returns at once.
#pragma once

#include "core/platform/log.h"
#include "core/platform/report_delivering.h"

#include <QDBusConnection>
#include <QObject>

namespace hopsel {

class DesktopReportDelivery final : public ReportDelivering {
  public:
    /// The session's bus, also one that is not connected. The log outlives this object.
    DesktopReportDelivery(const QDBusConnection& session, Log& log);

    std::optional<std::filesystem::path> saveFile(const std::string& suggestedName,
                                                  const std::string& contents) override;
    void copyToClipboard(const std::string& text) override;
    void openMail(const std::string& address) override;

  private:
    void reveal(const std::filesystem::path& file);
    void openFolder(const QString& folder);

    QDBusConnection session_;
    Log& log_;
    QObject pendingCalls_; ///< parent of the watchers: with it they are gone
};

} // namespace hopsel
