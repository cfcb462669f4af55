#include "platform/linux/applications/x11_frontmost_app_observer.h"
#include "session/x_display.h"
#include "session/x_server.h"
#include "support/qt_waiting.h"

#include <gmock/gmock.h>

namespace hopsel {
namespace {

using namespace std::string_literals;
using test::runLoopUntil;
using Identifier = std::optional<std::string>;

class FrontmostAppTest : public testing::Test {
  protected:
    FrontmostAppTest() {
        observer.onChange = [this](const Identifier& identifier) { reports.push_back(identifier); };
    }

    /// Waits for one more report than were seen before, and returns it.
    Identifier nextReport() {
        const std::size_t count = ++seen;
        return runLoopUntil([&] { return reports.size() >= count; }) ? reports[count - 1] : "no report"s;
    }
    bool isSilent() {
        return test::staysFalse([this] { return reports.size() > seen; });
    }

    session::XServer server;
    std::vector<Identifier> reports;
    std::size_t seen = 0;
    X11FrontmostAppObserver observer;
};

/// Plays the window manager and the application, both without manners.
struct UnmanagedWindow {
    UnmanagedWindow() {
        xcb_create_window(display.get(), XCB_COPY_FROM_PARENT, id, display.root(), 0, 0, 9, 9, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        display.roundTrip();
    }
    void activate(const std::vector<std::uint32_t>& value, const char* type = "WINDOW") {
        set(display.root(), "_NET_ACTIVE_WINDOW", type, 32, value.data(), value.size());
    }
    void say(const char* property, const std::string& text, const char* type = "STRING") {
        set(id, property, type, 8, text.data(), text.size());
    }
    void set(xcb_window_t window, const char* property, const char* type, std::uint8_t format,
             const void* data, std::size_t count) {
        xcb_change_property(display.get(), XCB_PROP_MODE_REPLACE, window, display.atom(property),
                            display.atom(type), format, static_cast<std::uint32_t>(count), data);
        display.roundTrip();
    }

    session::XDisplay display;
    xcb_window_t id = xcb_generate_id(display.get());
};

TEST_F(FrontmostAppTest, NameThatIsKnownAsRemoteGoesBeforeTheOthers) {
    UnmanagedWindow window;
    window.activate({window.id});
    observer.start();
    EXPECT_EQ(nextReport(), std::nullopt) << "a window without a name";

    const struct {
        const char* property;
        std::string value;
        const char* expected;
    } steps[] = {
        {"WM_CLASS", "instance\0Class\0"s, "Class"},
        {"WM_CLASS", "instance", "instance"},
        {"_KDE_NET_WM_DESKTOP_FILE", "/usr/share/applications/org.kde.kate.desktop", "org.kde.kate"},
        {"_GTK_APPLICATION_ID", "org.example.App", "org.example.App"},
        {"WM_CLASS", "remote-viewer\0Other\0"s, "remote-viewer"},
        {"_GTK_APPLICATION_ID", "org.remmina.Remmina", "org.remmina.Remmina"},
    };
    for (const auto& step : steps) {
        window.say(step.property, step.value);
        EXPECT_EQ(nextReport(), step.expected);
    }
}

TEST_F(FrontmostAppTest, AnythingInThePropertiesGivesAUsableNameOrNone) {
    UnmanagedWindow window;
    window.say("WM_CLASS", "app\0App\0"s);
    observer.start();
    ++seen;
    const std::vector<std::uint32_t> wrongWindows[] = {
        {window.display.root()}, {}, {0}, {window.id + 1}, {0xFFFFFFFF}};
    for (const auto& wrong : wrongWindows) {
        window.activate({window.id});
        EXPECT_EQ(nextReport(), "App");
        window.activate(wrong);
        EXPECT_EQ(nextReport(), std::nullopt);
    }
    window.activate({window.id}, "CARDINAL");
    EXPECT_TRUE(isSilent());
    window.activate({window.id, 7});
    EXPECT_EQ(nextReport(), "App") << "and still hears of the root window";

    for (const std::string& wrong :
         {"\xFF\xC3(\0\xE9\0"s, "a\nb\0c\x7F\0"s, "\0\0\0\0"s, ""s, "app\0"s + std::string(200'000, 'x')}) {
        window.say("WM_CLASS", wrong);
        EXPECT_EQ(nextReport(), std::nullopt);
        window.say("WM_CLASS", "app\0App\0"s);
        EXPECT_EQ(nextReport(), "App");
    }
}

TEST_F(FrontmostAppTest, LostServerIsReportedOnceAndReplacedByTheNext) {
    UnmanagedWindow window;
    window.say("_GTK_APPLICATION_ID", "org.example.App", "UTF8_STRING");
    window.activate({window.id});
    observer.start();
    EXPECT_EQ(nextReport(), "org.example.App");
    session::XServer next;
    UnmanagedWindow other;
    other.say("WM_CLASS", "other");
    other.activate({other.id});

    server.kill();
    // A callback that starts anew at once must not pull the ground from under its caller.
    observer.onChange = [&](const Identifier& identifier) {
        reports.push_back(identifier);
        setenv("DISPLAY", next.display().c_str(), 1);
        observer.start();
    };
    EXPECT_EQ(nextReport(), std::nullopt);
    EXPECT_EQ(nextReport(), "other");
    EXPECT_FALSE(observer.isLost());
    next.kill();
    EXPECT_EQ(nextReport(), std::nullopt);
    EXPECT_TRUE(isSilent() && observer.isLost());
}

} // namespace
} // namespace hopsel
