// Real programs on a real accessibility bus, under a real window manager.
#include "accessible_desktop.h"
#include "platform/linux/accessibility/atspi_secure_input.h"
#include "session/x_server.h"
#include "session/x_window.h"
#include "support/bus_links.h"
#include "support/fakes/engine_fakes.h"

#include <gmock/gmock.h>

using namespace hopsel;
using namespace hopsel::test;
using session::ChildProcess;
using Toolkit = AccessibleDesktop::Toolkit;

namespace {

using enum SecureInputState;

class AtspiSecureInputTest : public testing::TestWithParam<Toolkit> {
  protected:
    AtspiSecureInputTest() { server.startWindowManager(); }

    void watch() {
        input = std::make_unique<AtspiSecureInput>(linkTo(desktop.sessionBus.address()), log);
        input->onStateChange = [this] { states.push_back(input->state()); };
    }
    bool reaches(SecureInputState state) {
        return runLoopUntil([&] { return input->state() == state; });
    }
    bool becomes(bool isEnabled) {
        return runLoopUntil([&] { return input->isEnabled() == isEnabled; });
    }
    /// With the focus in its password field.
    std::unique_ptr<ChildProcess> startRecognised(Toolkit toolkit) {
        auto program = desktop.startProgram(toolkit);
        if (!becomes(true)) {
            // Qt looks for the bus while its window may have the focus already, and does not say so later.
            program->kill(SIGUSR2);
            staysFalse([&] { return input->isEnabled(); });
            program->kill(SIGUSR1);
            EXPECT_TRUE(becomes(true));
        }
        return program;
    }

    session::XServer server;
    AccessibleDesktop desktop;
    fakes::RecordingLog log;
    std::unique_ptr<AtspiSecureInput> input;
    std::vector<SecureInputState> states;
};

INSTANTIATE_TEST_SUITE_P(Toolkits, AtspiSecureInputTest, testing::Values(Toolkit::gtk, Toolkit::qt),
                         [](const auto& each) { return each.param == Toolkit::gtk ? "gtk" : "qt"; });

TEST_P(AtspiSecureInputTest, FollowsTheFocusWithinAProgramAndToOtherWindows) {
    desktop.start();
    watch();
    ASSERT_TRUE(reaches(watching));
    const auto program = startRecognised(GetParam());
    program->kill(SIGUSR2);
    EXPECT_TRUE(becomes(false)) << "the plain field";
    program->kill(SIGUSR1);
    EXPECT_TRUE(becomes(true)) << "and back";
    {
        const session::XTestWindow silent("tells nothing of itself");
        input->windowChanged();
        EXPECT_TRUE(becomes(false));
    }
    EXPECT_TRUE(becomes(true)) << "the window manager gives the focus back";
    input->windowChanged();
    input->retry();
    EXPECT_TRUE(staysFalse([&] { return !input->isEnabled(); }, std::chrono::milliseconds(400)))
        << "a field that still has the focus says so";
    EXPECT_TRUE(input->needsRetry()) << "some toolkits say it late, or never";
    program->kill(SIGKILL);
    EXPECT_TRUE(becomes(false)) << "nobody is left to say so";
    EXPECT_FALSE(input->needsRetry());
}

TEST_F(AtspiSecureInputTest, SaysWhatItCanTellAndStartsAnewWithTheNextBus) {
    watch();
    EXPECT_TRUE(staysFalse([&] { return !states.empty(); }));
    EXPECT_EQ(input->state(), unavailable);
    desktop.start(false);
    EXPECT_TRUE(reaches(off));
    auto program = startRecognised(Toolkit::gtk); // tells all the same
    desktop.setEnabled(true);
    EXPECT_TRUE(reaches(watching));
    desktop.setEnabled(false);
    EXPECT_TRUE(runLoopUntil([&] { return states.size() == 3; }));
    EXPECT_TRUE(input->isEnabled());
    desktop.killBus();
    EXPECT_TRUE(reaches(unavailable));
    EXPECT_FALSE(input->isEnabled());
    EXPECT_THAT(states, testing::ElementsAre(off, watching, off, unavailable));
    EXPECT_EQ(log.lines.size(), 4U);

    program.reset();
    desktop.start();
    ASSERT_TRUE(runLoopUntil([&] {
        if (input->needsRetry()) input->retry();
        return input->state() == watching;
    }));
    startRecognised(Toolkit::gtk);
}

} // namespace
