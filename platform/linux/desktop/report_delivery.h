// Hands a bug report to the user: a file that is then shown in the file manager, the clipboard, a new mail.
//
// Owned by the application model; needs the widgets' application object. Asking for the file's name runs the
// event loop, everything else returns at once.
#pragma once

#include "core/platform/log.h"
#include "core/platform/report_delivering.h"
#include "platform/linux/bus/bus_link.h"

namespace hopsel {

class DesktopReportDelivery final : public ReportDelivering {
  public:
    /// The session's bus. The log outlives this object.
    DesktopReportDelivery(std::shared_ptr<BusLink> session, Log& log);

    std::optional<std::filesystem::path> saveFile(const std::string& suggestedName,
                                                  const std::string& contents) override;
    void reveal(const std::filesystem::path& file) override;
    void copyToClipboard(const std::string& text) override;
    void openMail(const std::string& address) override;

  private:
    void openFolder(const QString& folder);

    std::shared_ptr<BusLink> session_;
    Log& log_;
    QObject context_; ///< answers end with it
};

} // namespace hopsel
