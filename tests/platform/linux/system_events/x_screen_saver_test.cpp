// XScreenSaver, as what it writes on the root window of a real X server.
#include "platform/linux/system_events/linux_system_event_observer.h"
#include "session/x_display.h"
#include "session/x_server.h"
#include "support/bus_links.h"
#include "support/fakes/engine_fakes.h"
#include "support/qt_waiting.h"

#include <QCoreApplication>
#include <array>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <utility>

using namespace hopsel;
using namespace hopsel::session;

namespace {

using enum SystemEvent;

/// What the saver does to the root window.
class PlayedSaver {
  public:
    PlayedSaver() : window_(xcb_generate_id(display_.get())) {
        xcb_create_window(display_.get(), 0, window_, display_.root(), 0, 0, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, 0, 0, nullptr);
        xcb_change_property(display_.get(), XCB_PROP_MODE_REPLACE, window_, atom("_SCREENSAVER_VERSION"),
                            XCB_ATOM_STRING, 8, 4, "6.06");
    }
    /// `state` is an atom's name; none for an open screen.
    void write(const char* state, std::uint8_t format = 32) {
        const std::array<std::uint32_t, 3> status{state != nullptr ? atom(state) : 0, 1795492924, 7};
        const std::uint32_t units = static_cast<std::uint32_t>(sizeof status) * 8 / format;
        xcb_change_property(display_.get(), XCB_PROP_MODE_REPLACE, display_.root(), atom(property),
                            XCB_ATOM_INTEGER, format, units, status.data());
        display_.roundTrip();
    }
    /// As it does when it is killed: its word stays.
    void die() {
        xcb_destroy_window(display_.get(), window_);
        display_.roundTrip();
    }

  private:
    static constexpr const char* property = "_SCREENSAVER_STATUS";

    xcb_atom_t atom(std::string_view name) {
        const auto cookie =
            xcb_intern_atom(display_.get(), 0, static_cast<std::uint16_t>(name.size()), name.data());
        const XOwned<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(display_.get(), cookie, nullptr));
        return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    }

    XDisplay display_;
    xcb_window_t window_;
};

class XScreenSaver : public testing::Test {
  protected:
    XScreenSaver() {
        observer.onEvent = [this](SystemEvent event) { events.push_back(event); };
        observer.onLocked = [this](bool now) { isLocked = now; };
    }
    ~XScreenSaver() override { observer.onLocked = nullptr; }

    /// Everything that was told since the last time.
    bool tells(const std::vector<SystemEvent>& expected) {
        const bool isTold = test::runLoopUntil([&] { return events.size() >= expected.size(); });
        return isTold && std::exchange(events, {}) == expected;
    }

    std::optional<XServer> server{std::in_place};
    LinuxSystemEventObserver observer{std::make_shared<fakes::FakeCatalog>(),
                                      test::linkTo("unix:path=/nonexistent"),
                                      test::linkTo("unix:path=/nonexistent")};
    std::vector<SystemEvent> events;
    bool isLocked = false;
};

TEST_F(XScreenSaver, LocksWhileItAsksForThePasswordAndNotWhileItOnlyBlanks) {
    observer.start();
    PlayedSaver saver;
    const auto writeAndRead = [&](const char* state, std::uint8_t format = 32) {
        saver.write(state, format);
        QCoreApplication::processEvents();
    };
    writeAndRead(nullptr);
    writeAndRead("BLANK");
    writeAndRead("LOCK", 8);
    writeAndRead("LOCK");
    EXPECT_TRUE(tells({screenLocked}) && isLocked);
    writeAndRead("AUTH");
    writeAndRead("LOCK");
    writeAndRead(nullptr);
    EXPECT_TRUE(tells({screenUnlocked}) && !isLocked);
    saver.write("LOCK");
    EXPECT_TRUE(tells({screenLocked}));
    saver.die();
    EXPECT_TRUE(tells({screenUnlocked}) && !isLocked);
    saver.write("LOCK");
    EXPECT_TRUE(test::staysFalse([&] { return isLocked; })) << "nobody is there";
}

TEST_F(XScreenSaver, IsFoundLockedAndOpensWithItsServer) {
    std::optional<PlayedSaver> saver(std::in_place);
    saver->write("LOCK");
    observer.start();
    EXPECT_TRUE(isLocked);
    observer.stop();
    EXPECT_FALSE(isLocked) << "nobody would tell";
    observer.start();
    EXPECT_TRUE(isLocked);
    saver.reset();
    server.reset();
    EXPECT_TRUE(test::runLoopUntil([&] { return !isLocked; }));
    observer.retry();
    EXPECT_TRUE(observer.isLost());

    server.emplace();
    PlayedSaver next;
    next.write("LOCK");
    observer.retry();
    EXPECT_TRUE(isLocked) << "on the next one";
    EXPECT_FALSE(observer.isLost());
}

} // namespace
