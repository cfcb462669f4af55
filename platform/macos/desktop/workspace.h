// What the user's workspace does for us: opens addresses, asks where to save, shows files, keeps a clipboard.
//
// The seam below the adapters that use it, so that these can be tried without the system.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace hopsel {

class Workspace {
  public:
    Workspace() = default;
    Workspace(const Workspace&) = delete;
    Workspace& operator=(const Workspace&) = delete;
    virtual ~Workspace() = default;

    /// What is no address is not opened.
    virtual void open(const std::string& address) = 0;
    virtual void openLoginItems() = 0;

    /// Brings the program to the front and waits for the user's answer. Nothing when the user cancelled.
    virtual std::optional<std::filesystem::path> askForFile(const std::string& suggestedName) = 0;
    /// In one step, as the system does for a file that the user chose. False when it failed.
    virtual bool write(const std::filesystem::path& file, const std::string& contents) = 0;
    virtual void reveal(const std::filesystem::path& file) = 0;
    virtual void copyText(const std::string& text) = 0;
};

} // namespace hopsel
