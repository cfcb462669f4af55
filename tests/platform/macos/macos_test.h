// A world of its own for each test, in which nothing may be left behind.
#pragma once

#include "platform/macos/base/main_loop.h"
#include "support/macos/fakes/event_taps.h"
#include "support/macos/fakes/system.h"
#include "support/macos/fakes/world.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace hopsel {

class MacosTest : public testing::Test {
  protected:
    MacosTest() {
        runFor(0); // the loop's own source stays for good
        sources_ = macos_fakes::sourcesOnMainLoop();
        objects_ = macos_fakes::liveObjects();
    }

    void TearDown() override {
        macos_fakes::resetLoop();
        macos_fakes::resetEventStream();
        macos_fakes::resetSystem();
        EXPECT_EQ(macos_fakes::liveObjects(), objects_);
        EXPECT_EQ(macos_fakes::sourcesOnMainLoop(), sources_);
        EXPECT_EQ(macos_fakes::distributedObservers(), 0U);
        EXPECT_EQ(macos_fakes::openPools(), 0U);
    }

    std::size_t sourcesOfTest() const { return macos_fakes::sourcesOnMainLoop() - sources_; }

  private:
    std::size_t sources_;
    long objects_;
};

} // namespace hopsel
