// The platform-free pieces: the switcher, remote applications, the guest key.
#include "core/platform/guest_key.h"
#include "core/platform/input_source_switcher.h"
#include "core/platform/remote_apps.h"
#include "support/fakes/engine_fakes.h"

#include <gmock/gmock.h>

namespace hopsel {
namespace {

using fakes::FakeCatalog;
using testing::DoubleNear;
using testing::ElementsAre;
using enum ModifierKey;

class Switcher : public testing::Test {
  protected:
    Switcher() {
        for (const char* id : {"A", "B", "C"}) catalog->sources.push_back({id, id, "", {}, true});
        catalog->current = "A";
    }

    fakes::VirtualTime time;
    std::shared_ptr<FakeCatalog> catalog = std::make_shared<FakeCatalog>();
    std::vector<double> pumped;
    InputSourceSwitcher::Clock clock = [this] { return time.now; };
    InputSourceSwitcher::RunLoop runLoop = [this](double seconds) {
        pumped.push_back(seconds);
        time.advance(seconds);
    };
    InputSourceSwitcher switcher{*catalog, clock, runLoop};
};

TEST_F(Switcher, WaitsInStepsUntilThePlatformReportsTheSourceOrTheTimeIsOver) {
    EXPECT_EQ(switcher.switchTo("C", std::nullopt, 0.5),
              (SwitchOutcome{"C", select_result::Selected{}, true, 0}));
    EXPECT_TRUE(pumped.empty()) << "it looks before it waits";
    catalog->lag = 3;
    SwitchOutcome outcome = switcher.switchTo("B", std::nullopt, 0.5);
    EXPECT_TRUE(outcome.verified);
    EXPECT_THAT(outcome.latencyMs, DoubleNear(15, 1e-6));
    EXPECT_THAT(pumped, ElementsAre(0.005, 0.005, 0.005));
    catalog->lag = 1000;
    outcome = switcher.switchTo("A", std::nullopt, 0.5);
    EXPECT_EQ(outcome.result, SelectResult{select_result::Selected{}});
    EXPECT_FALSE(outcome.verified);
    EXPECT_THAT(outcome.latencyMs, DoubleNear(502.5, 2.6));
}

TEST_F(Switcher, DoesNotWaitForWhatWasNotSelected) {
    catalog->status = -50;
    EXPECT_EQ(switcher.switchTo("B", std::nullopt, 0.5).result, SelectResult{select_result::Failed{-50}});
    EXPECT_EQ(switcher.switchTo("Z", std::nullopt, 0.5),
              (SwitchOutcome{"Z", select_result::NotFound{}, false, 0}));
    EXPECT_TRUE(pumped.empty());
}

TEST(RemoteApps, AreKnownByTheBeginningOfTheirIdentifier) {
    using enum remote_apps::Kind;
    // One for each, as their windows and bundles call themselves.
    for (const char* guest : {"com.parallels.desktop.console",
                              "COM.VMware.fusion",
                              "org.virtualbox.app.VirtualBoxVM",
                              "com.utmapp.UTM",
                              "com.veertu.anka",
                              "codes.rambo.VirtualBuddy",
                              "com.microsoft.rdc.macos",
                              "com.apple.ScreenSharing",
                              "com.apple.RemoteDesktop",
                              "VirtualBox Machine",
                              "VirtualBoxVM",
                              "Vmware",
                              "Vmplayer",
                              "Vmrc",
                              "virt-manager",
                              "org.virt_manager.virt-manager",
                              "Virt-viewer",
                              "remote-viewer",
                              "Spicy",
                              "org.gnome.Boxes",
                              "gnome-boxes",
                              "Qemu-system-x86_64",
                              "looking-glass-client",
                              "org.remmina.Remmina",
                              "Remmina",
                              "com.freerdp.FreeRDP",
                              "org.freerdp.FreeRDP",
                              "xfreerdp3",
                              "wlfreerdp",
                              "sdl-freerdp3",
                              "rdesktop",
                              "org.kde.krdc",
                              "Krdc",
                              "org.gnome.Connections",
                              "gnome-connections"})
        EXPECT_EQ(remote_apps::kind(guest), guestOS) << guest;
    for (const char* screen :
         {"com.p5sys.jump.mac.viewer", "com.TeamViewer.TeamViewer", "com.philandro.anydesk",
          "com.citrix.receiver", "com.realvnc.vncviewer", "TeamViewer", "Anydesk", "com.anydesk.Anydesk",
          "Rustdesk", "com.rustdesk.RustDesk", "Vncviewer", "xtigervncviewer", "TigerVNC Viewer",
          "realvnc-vncviewer", "Wfica", "parsecd", "com.parsecgaming.parsec", "Nxplayer.bin", "X2GoAgent"})
        EXPECT_EQ(remote_apps::kind(screen), remoteScreen) << screen;
    for (const char* local : {"VirtualBox Manager", "org.gnome.Terminal", "xvncviewer", "com.vmware", ""})
        EXPECT_FALSE(remote_apps::isRemote(local)) << local;
    EXPECT_FALSE(remote_apps::isRemote(std::nullopt));
}

TEST(GuestKeySequence, PressesModifiersByNameAndReleasesThemInReverse) {
    EXPECT_THAT(
        guest_key_sequence::events({49, {rightCommand, leftShift, leftCommand}}),
        ElementsAre(SyntheticKeyEvent{55, true, 0x100008, true}, SyntheticKeyEvent{56, true, 0x12000A, true},
                    SyntheticKeyEvent{54, true, 0x12001A, true}, SyntheticKeyEvent{49, true, 0x12001A, false},
                    SyntheticKeyEvent{49, false, 0x12001A, false},
                    SyntheticKeyEvent{54, false, 0x12000A, true}, // Command is still held on the left
                    SyntheticKeyEvent{56, false, 0x100008, true}, SyntheticKeyEvent{55, false, 0, true}));
}

} // namespace
} // namespace hopsel
