// Virtual machines and remote screens on X11, each by the names that its real windows bear: the application
// is recognised, and the trigger does there what it is meant to do.
#include "core/platform/remote_apps.h"
#include "platform/linux/applications/x11_frontmost_app_observer.h"
#include "platform/linux/x11/live_engine.h"

#include <gmock/gmock.h>

using namespace hopsel;
using namespace hopsel::test;

namespace {

class GuestWindows : public LiveEngine {
  protected:
    GuestWindows() {
        observer.onChange = [this](const std::optional<std::string>& name) {
            identifier = name;
            engine->setFrontmostRemoteKind(remote_apps::kind(name));
        };
        observer.start();
    }

    /// The window in front becomes one of that class.
    void become(const std::string& name, remote_apps::Kind kind) {
        const std::string both = "instance" + ('\0' + name) + '\0';
        xcb_change_property(display.get(), XCB_PROP_MODE_REPLACE, window->id(), XCB_ATOM_WM_CLASS,
                            XCB_ATOM_STRING, 8, static_cast<std::uint32_t>(both.size()), both.data());
        display.flush();
        EXPECT_TRUE(runLoopUntil([&] { return identifier == name; })) << *identifier;
        EXPECT_EQ(engine->frontmostRemoteKind(), kind);
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
    for (const char* machine :
         {"VirtualBox Machine", "VirtualBoxVM", "Vmware", "Vmplayer", "Vmrc", "Virt-manager", "Virt-viewer",
          "Remote-viewer", "Spicy", "Gnome-boxes", "qemu", "qemu-system-x86_64", "Org.remmina.Remmina",
          "Remmina", "xfreerdp", "krdc"}) {
        SCOPED_TRACE(machine);
        become(machine, remote_apps::Kind::guestOS);
        keyboard->tap(key::rightSuper);
        EXPECT_TRUE(happens<engine_event::GuestKeySent>());
        EXPECT_TRUE(window->waitForKeys(6));
        EXPECT_EQ(window->keys(), "+126 -126 +29 +57 -57 -29");
    }
    EXPECT_EQ(layouts.lockedGroup(), 0);
}

TEST_F(GuestWindows, OfRemoteScreensAreLeftAlone) {
    for (const char* screen : {"TeamViewer", "Anydesk", "Rustdesk", "Nxplayer.bin", "Vncviewer",
                               "TigerVNC Viewer", "Wfica", "parsecd", "X2GoAgent"}) {
        SCOPED_TRACE(screen);
        become(screen, remote_apps::Kind::remoteScreen);
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
    XTestWindow manager("VirtualBox Manager"); // an ordinary window
    EXPECT_TRUE(runLoopUntil([&] { return identifier == "VirtualBox Manager"; }));
    keyboard->tap(key::rightSuper);
    EXPECT_TRUE(happens<engine_event::Switched>());
    EXPECT_EQ(layouts.lockedGroup(), 1);
    window->focus();
    EXPECT_TRUE(runLoopUntil([&] { return engine->frontmostRemoteKind().has_value(); }));
}

} // namespace
