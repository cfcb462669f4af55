// Hands a bug report to the user: a file that is then shown in the Finder, the clipboard, a new mail.
//
// Owned by the application model. Asking for the file's name waits for the user, everything else returns at
// once.
#pragma once

#include "core/platform/report_delivering.h"
#include "platform/macos/desktop/workspace.h"

#include <memory>

namespace hopsel {

class LiveReportDelivery final : public ReportDelivering {
  public:
    explicit LiveReportDelivery(std::shared_ptr<Workspace> workspace);

    std::optional<std::filesystem::path> saveFile(const std::string& suggestedName,
                                                  const std::string& contents) override;
    void reveal(const std::filesystem::path& file) override { workspace_->reveal(file); }
    void copyToClipboard(const std::string& text) override { workspace_->copyText(text); }
    void openMail(const std::string& address) override;

  private:
    std::shared_ptr<Workspace> workspace_;
};

} // namespace hopsel
