#include "core/platform/remote_apps.h"

#include "core/platform/identifier_prefix.h"

#include <algorithm>
#include <array>

namespace hopsel::remote_apps {

namespace {

struct Row {
    std::string_view prefix;
    Kind kind;
};

constexpr std::array rows{
    // Bundle identifiers. Clients that show a whole system which switches by itself count as guests.
    Row{"com.parallels.", Kind::guestOS},
    Row{"com.vmware.", Kind::guestOS},
    Row{"org.virtualbox.", Kind::guestOS},
    Row{"com.utmapp.utm", Kind::guestOS},
    Row{"com.veertu.", Kind::guestOS},
    Row{"codes.rambo.virtualbuddy", Kind::guestOS},
    Row{"com.microsoft.rdc", Kind::guestOS},
    Row{"com.apple.screensharing", Kind::guestOS},
    Row{"com.apple.remotedesktop", Kind::guestOS},
    Row{"com.p5sys.jump", Kind::remoteScreen},
    Row{"com.teamviewer.", Kind::remoteScreen},
    Row{"com.philandro.anydesk", Kind::remoteScreen},
    Row{"com.citrix.", Kind::remoteScreen},
    Row{"com.realvnc.", Kind::remoteScreen},

    // Linux: desktop-file names where the program has one with a reversed domain, else the window class.
    Row{"virtualbox machine", Kind::guestOS}, // not "VirtualBox Manager", an ordinary window
    Row{"virtualboxvm", Kind::guestOS},
    Row{"vmware", Kind::guestOS},
    Row{"vmplayer", Kind::guestOS},
    Row{"vmrc", Kind::guestOS},
    Row{"virt-manager", Kind::guestOS},
    Row{"org.virt_manager.", Kind::guestOS},
    Row{"virt-viewer", Kind::guestOS},
    Row{"remote-viewer", Kind::guestOS},
    Row{"spicy", Kind::guestOS},
    Row{"org.gnome.boxes", Kind::guestOS},
    Row{"gnome-boxes", Kind::guestOS},
    Row{"qemu", Kind::guestOS}, // "qemu" and "qemu-system-x86_64"
    Row{"looking-glass-client", Kind::guestOS},
    Row{"org.remmina.remmina", Kind::guestOS},
    Row{"remmina", Kind::guestOS},
    Row{"com.freerdp.", Kind::guestOS},
    Row{"org.freerdp.", Kind::guestOS},
    Row{"xfreerdp", Kind::guestOS},
    Row{"wlfreerdp", Kind::guestOS},
    Row{"sdl-freerdp", Kind::guestOS},
    Row{"rdesktop", Kind::guestOS},
    Row{"org.kde.krdc", Kind::guestOS},
    Row{"krdc", Kind::guestOS},
    Row{"org.gnome.connections", Kind::guestOS},
    Row{"gnome-connections", Kind::guestOS},
    Row{"teamviewer", Kind::remoteScreen},
    Row{"anydesk", Kind::remoteScreen},
    Row{"com.anydesk.", Kind::remoteScreen},
    Row{"rustdesk", Kind::remoteScreen},
    Row{"com.rustdesk.", Kind::remoteScreen},
    Row{"vncviewer", Kind::remoteScreen},
    Row{"xtigervncviewer", Kind::remoteScreen},
    Row{"tigervnc", Kind::remoteScreen},
    Row{"realvnc-vncviewer", Kind::remoteScreen},
    Row{"wfica", Kind::remoteScreen},
    Row{"parsecd", Kind::remoteScreen},
    Row{"com.parsecgaming.parsec", Kind::remoteScreen},
    Row{"nxplayer", Kind::remoteScreen},
    Row{"x2goagent", Kind::remoteScreen},
};

} // namespace

std::optional<Kind> kind(std::optional<std::string_view> bundleID) {
    if (!bundleID) return std::nullopt;
    const auto* row = std::find_if(rows.begin(), rows.end(),
                                   [&](const Row& each) { return identifierBegins(*bundleID, each.prefix); });
    if (row == rows.end()) return std::nullopt;
    return row->kind;
}

bool isRemote(std::optional<std::string_view> bundleID) { return kind(bundleID).has_value(); }

} // namespace hopsel::remote_apps
