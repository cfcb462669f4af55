// Virtual machines and remote screens on X11, each by the names that its real windows bear: the application
// is recognised, and the trigger does there what it is meant to do.
#include "app/linux/session/x11_frontmost_app_observer.h"
#include "core/platform/remote_apps.h"
#include "x11/live_engine.h"

#include <gmock/gmock.h>

using namespace hopsel;
using namespace hopsel::test;

namespace {

using enum remote_apps::Kind;

struct Names {
    const char* instance;
    const char* windowClass;
    std::optional<remote_apps::Kind> kind;
    const char* gtkApplication = nullptr;
    const char* expected = nullptr; ///< the class if it is not given
};

class GuestWindows : public LiveEngine {
  protected:
    GuestWindows() {
        observer.onChange = [this](const std::optional<std::string>& name) {
            identifier = name;
            engine->setFrontmostRemoteKind(remote_apps::kind(name));
        };
        observer.start();
    }

    /// The window in front becomes one of that application.
    void become(const Names& names) {
        const auto set = [this](xcb_atom_t property, const std::string& text) {
            xcb_change_property(display.get(), XCB_PROP_MODE_REPLACE, window->id(), property, XCB_ATOM_STRING,
                                8, static_cast<std::uint32_t>(text.size()), text.data());
        };
        const xcb_atom_t gtk = display.atom("_GTK_APPLICATION_ID");
        if (names.gtkApplication != nullptr)
            set(gtk, names.gtkApplication);
        else
            xcb_delete_property(display.get(), window->id(), gtk);
        set(XCB_ATOM_WM_CLASS, names.instance + std::string(1, '\0') + names.windowClass + '\0');
        display.flush();
        const std::string expected = names.expected != nullptr ? names.expected : names.windowClass;
        EXPECT_TRUE(runLoopUntil([&] { return identifier == expected; })) << *identifier;
        EXPECT_EQ(engine->frontmostRemoteKind(), names.kind);
        window->clear();
        events.clear();
    }
    template <class Event>
    bool happens() {
        return runLoopUntil([&] {
            return std::any_of(events.begin(), events.end(),
                               [](const EngineEvent& event) { return std::holds_alternative<Event>(event); });
        });
    }

    XDisplay display;
    std::optional<std::string> identifier;
    X11FrontmostAppObserver observer;
};

TEST_F(GuestWindows, GetTheGuestKey) {
    const Names machines[] = {
        {"VirtualBox Machine", "VirtualBox Machine", guestOS},
        {"VirtualBox Machine UUID: {12345678-9abc-4def-8123-456789abcdef}", "VirtualBox Machine", guestOS},
        {"VirtualBoxVM", "VirtualBoxVM", guestOS},
        {"vmware", "Vmware", guestOS},
        {"vmplayer", "Vmplayer", guestOS},
        {"vmrc", "Vmrc", guestOS},
        {"virt-manager", "Virt-manager", guestOS},
        {"virt-viewer", "Virt-viewer", guestOS},
        {"remote-viewer", "Remote-viewer", guestOS},
        {"spicy", "Spicy", guestOS},
        {"gnome-boxes", "Gnome-boxes", guestOS, "org.gnome.Boxes", "org.gnome.Boxes"},
        {"gnome-boxes", "Gnome-boxes", guestOS},
        {"qemu", "qemu", guestOS},
        {"qemu-system-x86_64", "qemu-system-x86_64", guestOS},
        {"org.remmina.Remmina", "Org.remmina.Remmina", guestOS, "org.remmina.Remmina", "org.remmina.Remmina"},
        {"remmina", "Remmina", guestOS},
        {"xfreerdp", "xfreerdp", guestOS},
        {"krdc", "krdc", guestOS},
    };
    for (const Names& machine : machines) {
        SCOPED_TRACE(machine.instance);
        become(machine);
        keyboard->tap(key::rightSuper);
        EXPECT_TRUE(happens<engine_event::GuestKeySent>());
        EXPECT_TRUE(window->waitForKeys(6));
        EXPECT_EQ(window->keys(), "+126 -126 +29 +57 -57 -29");
    }
    EXPECT_EQ(layouts.lockedGroup(), 0);
}

TEST_F(GuestWindows, OfRemoteScreensAreLeftAlone) {
    const Names screens[] = {
        {"TeamViewer", "TeamViewer", remoteScreen}, {"anydesk", "Anydesk", remoteScreen},
        {"rustdesk", "Rustdesk", remoteScreen},     {"nxplayer.bin", "Nxplayer.bin", remoteScreen},
        {"vncviewer", "Vncviewer", remoteScreen},   {"vncviewer", "TigerVNC Viewer", remoteScreen},
        {"wfica", "Wfica", remoteScreen},           {"parsecd", "parsecd", remoteScreen},
        {"X2GoAgent", "X2GoAgent", remoteScreen},
    };
    for (const Names& screen : screens) {
        SCOPED_TRACE(screen.instance);
        become(screen);
        keyboard->tap(key::rightSuper);
        keyboard->press(key::leftShift);
        keyboard->tap(key::space);
        keyboard->release(key::leftShift);
        keyboard->tap(key::q); // comes after whatever the others may bring about
        EXPECT_TRUE(window->waitForKeys(8));
        EXPECT_EQ(window->keys(), "+126 -126 +42 +57 -57 -42 +16 -16");
        EXPECT_THAT(events, testing::Not(testing::Contains(
                                testing::VariantWith<engine_event::GuestKeySent>(testing::_))));
    }
    EXPECT_EQ(layouts.lockedGroup(), 0);
    become({"virtualbox", "VirtualBox Manager", std::nullopt});
    keyboard->tap(key::rightSuper);
    EXPECT_TRUE(happens<engine_event::Switched>());
    EXPECT_EQ(layouts.lockedGroup(), 1) << "an ordinary window again";
}

} // namespace
