// Which applications show another computer: virtual machines and remote-desktop clients. A pure table.
#pragma once

#include <optional>
#include <string_view>

namespace hopsel::remote_apps {

enum class Kind {
    guestOS,      ///< gets the guest key, which switches inside it
    remoteScreen, ///< is left alone with every key
};

/// By the application's identifier (bundle identifier, desktop-file name or window class), compared without
/// regard to case by its beginning. Nothing or an unknown identifier gives no kind.
std::optional<Kind> kind(std::optional<std::string_view> bundleID);

bool isRemote(std::optional<std::string_view> bundleID);

} // namespace hopsel::remote_apps
