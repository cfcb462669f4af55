#include "platform/macos/desktop/live_report_delivery.h"

#include <utility>

namespace hopsel {

LiveReportDelivery::LiveReportDelivery(std::shared_ptr<Workspace> workspace)
    : workspace_(std::move(workspace)) {}

std::optional<std::filesystem::path> LiveReportDelivery::saveFile(const std::string& suggestedName,
                                                                  const std::string& contents) {
    auto file = workspace_->askForFile(suggestedName);
    if (!file || !workspace_->write(*file, contents)) return std::nullopt;
    workspace_->reveal(*file);
    return file;
}

void LiveReportDelivery::openMail(const std::string& address) {
    if (address.rfind("mailto:", 0) == 0) workspace_->open(address);
}

} // namespace hopsel
