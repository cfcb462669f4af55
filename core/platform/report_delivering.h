// The seam through which a bug report leaves the program: a file, the clipboard, a new mail.
//
// Owned by the application model. The program itself never sends anything.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace hopsel {

class ReportDelivering {
  public:
    ReportDelivering() = default;
    ReportDelivering(const ReportDelivering&) = delete;
    ReportDelivering& operator=(const ReportDelivering&) = delete;
    virtual ~ReportDelivering() = default;

    /// Asks the user for a place and writes there; waits for the answer. Where it was written, or nothing
    /// when the user cancelled or writing failed.
    virtual std::optional<std::filesystem::path> saveFile(const std::string& suggestedName,
                                                          const std::string& contents) = 0;
    /// Shows a file in the file manager, or its folder where that is all that can be done.
    virtual void reveal(const std::filesystem::path& file) = 0;
    virtual void copyToClipboard(const std::string& text) = 0;
    /// `address` is a "mailto:" URL, percent-encoded.
    virtual void openMail(const std::string& address) = 0;
};

/// For previews: nothing leaves the program.
class NoReportDelivery final : public ReportDelivering {
  public:
    std::optional<std::filesystem::path> saveFile(const std::string& /*suggestedName*/,
                                                  const std::string& /*contents*/) override {
        return std::nullopt;
    }
    void reveal(const std::filesystem::path& /*file*/) override {}
    void copyToClipboard(const std::string& /*text*/) override {}
    void openMail(const std::string& /*address*/) override {}
};

} // namespace hopsel
