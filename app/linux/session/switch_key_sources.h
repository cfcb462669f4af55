// Where the desktops keep the keys with which they themselves switch input sources. Each reads afresh,
// cheaply.
//
// Owned by DesktopSwitchKeys. Files, settings and properties of other programs: what cannot be read is
// nothing.
#pragma once

#include "core/platform/linux/x11/x11_connection.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace hopsel {

/// Accelerators as they are written down.
using Accelerators = std::vector<std::string>;

/// A list of texts in the desktop's settings store.
class DesktopSetting {
  public:
    DesktopSetting(const char* schema, const char* key) : schema_(schema), key_(key) {}

    /// Empty when this system does not have the setting. The first call opens the store, which costs threads
    /// and memory and wants a session bus: only for desktops that are there.
    Accelerators read();

  private:
    struct Unref {
        void operator()(void* object) const;
    };

    void open();

    const char* schema_;
    const char* key_;
    bool isOpen_ = false;
    std::unique_ptr<void, Unref> settings_; ///< a GSettings
};

/// The hot keys of Fcitx5: its file is there only once something was changed in it.
class FcitxHotkeys {
  public:
    explicit FcitxHotkeys(std::filesystem::path file) : file_(std::move(file)) {}
    static std::filesystem::path defaultFile();

    const Accelerators& read();

  private:
    std::filesystem::path file_;
    std::filesystem::file_time_type readAt_{};
    bool hasRead_ = false;
    Accelerators keys_;
};

/// The X server's own switch keys ("grp:win_space_toggle" and the like) that are combinations with an
/// ordinary key.
class XkbOptions {
  public:
    Accelerators read();

  private:
    std::string rulesNames();

    std::unique_ptr<X11Connection> connection_;
    xcb_atom_t property_ = XCB_ATOM_NONE;
};

} // namespace hopsel
