// The user's workspace itself. Made by the platform and shared by its adapters; needs the application object.
#pragma once

#include "platform/macos/desktop/workspace.h"

namespace hopsel {

class LiveWorkspace final : public Workspace {
  public:
    void open(const std::string& address) override;
    void openLoginItems() override;
    std::optional<std::filesystem::path> askForFile(const std::string& suggestedName) override;
    bool write(const std::filesystem::path& file, const std::string& contents) override;
    void reveal(const std::filesystem::path& file) override;
    void copyText(const std::string& text) override;
};

} // namespace hopsel
