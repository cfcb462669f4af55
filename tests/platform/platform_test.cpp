// The small platform-free pieces: remote applications, the guest key, the log of failures.
#include "core/platform/guest_key.h"
#include "core/platform/remote_apps.h"
#include "core/platform/synthetic_events.h"
#include "core/platform/tap_failure.h"
#include "support/fakes/engine_fakes.h"

#include <gmock/gmock.h>

namespace hopsel {
namespace {

using testing::ElementsAre;
using enum ModifierKey;

TEST(RemoteApps, areKnownByTheBeginningOfTheirIdentifier) {
    using remote_apps::Kind;
    const std::pair<const char*, std::optional<Kind>> rows[]{
        {"COM.VMWARE.fusion", Kind::guestOS},
        {"com.microsoft.rdcx", Kind::guestOS},
        {"com.apple.ScreenSharing", Kind::guestOS},
        {"com.TeamViewer.TeamViewer", Kind::remoteScreen},
        {"com.parallels", std::nullopt},
        {"xcom.parallels.", std::nullopt},
        {"VirtualBox Machine", Kind::guestOS},
        {"VirtualBox Manager", std::nullopt},
        {"qemu-system-x86_64", Kind::guestOS},
        {"org.remmina.Remmina", Kind::guestOS},
        {"org.gnome.Terminal", std::nullopt},
        {"Vncviewer", Kind::remoteScreen},
        {"Nxplayer.bin", Kind::remoteScreen},
        {"", std::nullopt},
    };
    for (const auto& [identifier, kind] : rows) {
        EXPECT_EQ(remote_apps::kind(identifier), kind) << identifier;
        EXPECT_EQ(remote_apps::isRemote(identifier), kind.has_value()) << identifier;
    }
    EXPECT_FALSE(remote_apps::isRemote(std::nullopt));
}

TEST(GuestKeySequence, pressesModifiersByNameAndReleasesThemInReverse) {
    EXPECT_THAT(
        guest_key_sequence::events({49, {rightCommand, leftShift, leftCommand}}),
        ElementsAre(SyntheticKeyEvent{55, true, 0x100008, true}, SyntheticKeyEvent{56, true, 0x12000A, true},
                    SyntheticKeyEvent{54, true, 0x12001A, true}, SyntheticKeyEvent{49, true, 0x12001A, false},
                    SyntheticKeyEvent{49, false, 0x12001A, false},
                    SyntheticKeyEvent{54, false, 0x12000A, true}, // Command is still held on the left
                    SyntheticKeyEvent{56, false, 0x100008, true}, SyntheticKeyEvent{55, false, 0, true}));
    EXPECT_THAT(guest_key_sequence::events({96, {}}),
                ElementsAre(SyntheticKeyEvent{96, true, 0, false}, SyntheticKeyEvent{96, false, 0, false}));
}

TEST(SyntheticEventMarker, isPositiveAndStaysTheSame) {
    EXPECT_GT(synthetic_events::marker(), 0);
    EXPECT_EQ(synthetic_events::marker(), synthetic_events::marker());
}

TEST(TapFailureLog, saysEachReasonOnceAndThatItIsOver) {
    fakes::RecordingLog log;
    TapFailureLog failures(log);
    failures.started();
    failures.failed("no display");
    failures.failed("no display");
    failures.failed("refused");
    failures.started();
    failures.started();
    failures.failed("refused");
    EXPECT_THAT(log.lines, ElementsAre("error ActiveTap: ActiveTap start failed: no display",
                                       "error ActiveTap: ActiveTap start failed: refused",
                                       "info ActiveTap: ActiveTap started after a failure",
                                       "error ActiveTap: ActiveTap start failed: refused"));
}

} // namespace
} // namespace hopsel
