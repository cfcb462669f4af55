#include "app/walk/walk_rig.h"

#include <algorithm>
#include <cstdlib>

// The accessibility library keeps what it once asked for. The name is the leak checker's.
// NOLINTNEXTLINE(bugprone-reserved-identifier, readability-identifier-naming)
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libdbus-1\nleak:libglib-2\nleak:libatspi";
}

namespace hopsel::test {

using namespace session;
using namespace std::chrono_literals;

namespace {

void waitForService(const char* name) {
    ChildProcess::Options options;
    options.program = "gdbus";
    options.arguments = {"wait", "--session", "--timeout", "20", name};
    options.package = "libglib2.0-bin";
    runProgram(options, 25s);
}

} // namespace

Walk::Walk(bool withPanel, Framework wanted)
    : framework(wanted),
      bus(wanted == Framework::none ? std::make_unique<PrivateBus>() : nullptr),
      ibus(wanted == Framework::ibus ? std::make_unique<IbusSession>() : nullptr),
      fcitx(wanted == Framework::fcitx ? std::make_unique<FcitxSession>() : nullptr) {
    setLayouts(framework == Framework::none ? "us,ru,de" : "us");
    server.startWindowManager();
    if (withPanel) server.startPanel();
    if (framework == Framework::ibus) {
        IbusSession::setEngines("['xkb:us::eng', 'hangul']");
        IbusSession::setHangulStart("hangul");
        ibus->startDaemon();
        waitForService("org.freedesktop.IBus");
    }
    if (framework == Framework::fcitx) {
        fcitx->startDaemon();
        waitForService("org.fcitx.Fcitx5");
        waitForService("org.freedesktop.IBus"); // it serves these programs as well
    }
}

ChildProcess::Options Walk::program() const {
    ChildProcess::Options options;
    options.program = HOPSEL_EXECUTABLE;
    if (framework == Framework::none) {
        const std::string folder = home.path().string();
        options.environment = {{"HOME", folder},
                               {"XDG_CONFIG_HOME", folder + "/config"},
                               {"XDG_DATA_HOME", folder + "/data"},
                               {"XDG_RUNTIME_DIR", folder}};
    }
    if (framework != Framework::none)
        options.environment = {{"QT_IM_MODULE", framework == Framework::ibus ? "ibus" : "fcitx"}};
    options.environment.insert({{"HOPSEL_CONFIG", std::nullopt},
                                {"LC_ALL", locale},
                                {"LANGUAGE", std::nullopt},
                                {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1"}});
    return options;
}

std::string Walk::settings() const {
    const char* data = std::getenv("XDG_DATA_HOME");
    const bool isFrameworks = framework != Framework::none && data != nullptr;
    return contents((isFrameworks ? std::filesystem::path(data) : home.path() / "data") /
                    "Hopsel/config.json");
}

void Walk::start(const std::vector<std::string>& arguments) {
    ChildProcess::Options options = program();
    options.arguments = arguments;
    running = std::make_unique<ChildProcess>(options);
}

bool Walk::startAgain(const std::vector<std::string>& arguments) const {
    ChildProcess::Options options = program();
    options.arguments = arguments;
    return ChildProcess(options).waitForExit(20s) == 0;
}

void Walk::startWithoutIntroduction() {
    start();
    expectSeen("Skip for now");
    // Again if need be: a window that has just appeared may not hear a click yet.
    const auto isGone = [this] { return !sees("Skip for now"); };
    EXPECT_TRUE(reader.waitUntil([&] {
        click("Skip for now");
        return reader.waitUntil(isGone, 2s);
    }));
}

void Walk::click(const std::string& name) {
    std::optional<SeenWidget> widget;
    ASSERT_TRUE(reader.waitUntil([&] {
        const std::vector<SeenWidget> seen = reader.look();
        const auto found = std::find_if(seen.begin(), seen.end(),
                                        [&](const SeenWidget& candidate) { return candidate.name == name; });
        if (found == seen.end() || !found->isEnabled) return false;
        // The window manager may still be putting the window in its place.
        const bool rests = widget && widget->x == found->x && widget->y == found->y;
        widget = *found;
        if (!rests) return false;
        // Below the window's edge it is "showing" as well: the page scrolls.
        const int middle = found->y + found->height / 2;
        auto window = found;
        while (!window->isWindow) --window;
        if (middle < window->y + window->height) return true;
        point(*window);
        keyboard.scroll(XKeyboard::Scroll::down);
        return false;
    })) << name;
    point(*widget);
    keyboard.button(1);
}

void Walk::point(const SeenWidget& widget) {
    keyboard.movePointer(static_cast<std::int16_t>(widget.x + widget.width / 2),
                         static_cast<std::int16_t>(widget.y + widget.height / 2));
}

void Walk::expectSeen(const std::string& name) {
    EXPECT_TRUE(reader.waitUntil([&] { return sees(name); })) << name;
}

void Walk::expectGone(const std::string& name) {
    EXPECT_TRUE(reader.waitUntil([&] { return !sees(name); })) << name;
}

void Walk::expectSwitched(int group, const std::function<void()>& press) {
    for (int attempt = 0; attempt < 25; ++attempt) {
        press();
        if (layouts.waitForGroup(group, 400ms)) return;
    }
    ADD_FAILURE() << "no switch to group " << group;
}

void Walk::expectEnded() { EXPECT_EQ(running->waitForExit(10s), 0); }

bool Walk::waitForPopup(std::chrono::milliseconds timeout) const {
    XDisplay display;
    return reader.waitUntil(
        [&] {
            xcb_connection_t* const connection = display.get();
            // In one piece, so that the popup cannot be refused the keyboard because of this question.
            xcb_grab_server(connection);
            const auto asked = xcb_grab_keyboard(connection, 0, display.root(), XCB_CURRENT_TIME,
                                                 XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
            xcb_ungrab_keyboard(connection, XCB_CURRENT_TIME);
            xcb_ungrab_server(connection);
            const XOwned<xcb_grab_keyboard_reply_t> reply(
                xcb_grab_keyboard_reply(connection, asked, nullptr));
            return reply && reply->status == XCB_GRAB_STATUS_ALREADY_GRABBED;
        },
        timeout);
}

void Walk::pressInTray(int fromTheEnd) {
    ASSERT_TRUE(reader.waitUntil([&] {
        keyboard.movePointer(1012, 12); // the panel's one icon
        keyboard.button(1);
        return waitForPopup(3s);
    }));
    for (int i = 0; i < fromTheEnd; ++i) keyboard.tap(KEY_UP);
    keyboard.press(key::enter);
}

void Walk::chooseFromTray(int fromTheEnd) {
    pressInTray(fromTheEnd);
    keyboard.release(key::enter);
}

void Walk::quitFromTray(int fromTheEnd) {
    pressInTray(fromTheEnd);
    expectEnded();
    keyboard.release(key::enter);
}

void Walk::pressWith(std::uint16_t modifier, std::uint16_t code) {
    keyboard.press(modifier);
    keyboard.tap(code);
    keyboard.release(modifier);
}

} // namespace hopsel::test
