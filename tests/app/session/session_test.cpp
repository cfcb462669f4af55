// What the session around us is: languages, the keys that the desktop binds itself, the application in front.
#include "app/linux/session/accelerator.h"
#include "app/linux/session/desktop_switch_keys.h"
#include "app/linux/session/preferred_languages.h"
#include "app/linux/session/system_facts.h"
#include "app/linux/session/x11_frontmost_app_observer.h"
#include "session/private_bus.h"
#include "session/x_display.h"
#include "session/x_layouts.h"
#include "session/x_server.h"
#include "session/x_window.h"
#include "support/qt_waiting.h"

#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>

using namespace hopsel;
using namespace hopsel::session;
using testing::IsEmpty;

namespace {

using Modifier = ModifierKey;

TEST(PreferredLanguages, comeInTheOrderOfGettext) {
    using Environment = std::map<std::string, std::string>;
    const std::pair<Environment, std::vector<std::string>> cases[] = {
        {{}, {}},
        {{{"LANG", "ko_KR.UTF-8"}}, {"ko_KR"}},
        {{{"LANG", "en_US.UTF-8"}, {"LC_ALL", "ko_KR@hanja"}}, {"ko_KR"}},
        {{{"LANG", "en_US"}, {"LC_MESSAGES", "ja_JP.eucJP"}, {"LC_ALL", ""}}, {"ja_JP"}},
        {{{"LANG", "de_DE"}, {"LANGUAGE", ":ko::en.UTF-8:"}}, {"ko", "en", "de_DE"}},
        {{{"LANG", "de_DE"}, {"LC_ALL", "C.UTF-8"}, {"LANGUAGE", "ko"}}, {}},
        {{{"LC_ALL", "POSIX"}, {"LANGUAGE", "ko"}}, {}}};
    for (const auto& [environment, languages] : cases) {
        const EnvironmentReader reader = [&environment = environment](const char* name) {
            const auto found = environment.find(name);
            return found != environment.end() ? found->second : std::string();
        };
        EXPECT_EQ(preferredLanguages(reader), languages);
    }
}

TEST(SystemFacts, nameDistributionKernelAndMachine) {
    EXPECT_THAT(system_facts::systemVersion(), testing::MatchesRegex(".+, Linux [0-9]+\\.[0-9].*"));
    EXPECT_THAT(system_facts::architecture(), testing::MatchesRegex("[a-z0-9_]+"));
}

TEST(Accelerators, areReadInBothSpellings) {
    const ShortcutKey superSpace{49, {Modifier::leftCommand}};
    const ShortcutKey controlShiftSpace{49, {Modifier::leftControl, Modifier::leftShift}};
    const std::pair<const char*, std::optional<ShortcutKey>> cases[] = {
        {"<Super>space", superSpace},
        {"Super+space", superSpace},
        {"<Primary><Shift>space", controlShiftSpace},
        {"Control+Shift+space", controlShiftSpace},
        {"<ctrl><SHIFT>Space", controlShiftSpace},
        {"<Alt>grave", ShortcutKey{50, {Modifier::leftOption}}},
        {"F9", ShortcutKey{101, {}}},
        {"<Control>K", ShortcutKey{40, {Modifier::leftControl}}},
        {"Control+Shift_L", std::nullopt}, // its key is a modifier
        {"Caps_Lock", std::nullopt},
        {"<Hyper>space", std::nullopt},
        {"<Super", std::nullopt},
        {"<Super>", std::nullopt},
        {"Control+", std::nullopt},
        {"+", std::nullopt},
        {"", std::nullopt},
        {"\xff<>\x01", std::nullopt},
    };
    for (const auto& [text, key] : cases) EXPECT_EQ(shortcutFromAccelerator(text), key) << text;
}

class SwitchKeys : public testing::Test {
  protected:
    SwitchKeys() {
        // The schemas of the desktops, as far as they matter here, and a settings store in a file.
        folder.write("schemas/test.gschema.xml", R"(<schemalist>
  <schema id="org.freedesktop.ibus.general.hotkey" path="/desktop/ibus/general/hotkey/">
    <key name="triggers" type="as"><default>['&lt;Super&gt;space']</default></key>
  </schema>
  <schema id="org.gnome.desktop.wm.keybindings" path="/org/gnome/desktop/wm/keybindings/">
    <key name="switch-input-source" type="as"><default>['&lt;Super&gt;space', 'XF86Keyboard']</default></key>
    <key name="switch-input-source-backward" type="s"><default>'of another type'</default></key>
  </schema>
</schemalist>)");
        ChildProcess::Options compiler;
        compiler.program = "glib-compile-schemas";
        compiler.arguments = {(folder.path() / "schemas").string()};
        compiler.package = "libglib2.0-bin";
        runProgram(compiler);
        setenv("GSETTINGS_SCHEMA_DIR", (folder.path() / "schemas").c_str(), 1);
        setenv("GSETTINGS_BACKEND", "memory", 1);
        control = QDBusConnection::connectToBus(QString::fromStdString(bus.address()), "names");
        keys = std::make_unique<DesktopSwitchKeys>(
            QDBusConnection::connectToBus(QString::fromStdString(bus.address()), "switch keys"), fcitxFile);
    }
    ~SwitchKeys() override {
        keys.reset();
        QDBusConnection::disconnectFromBus("switch keys");
        QDBusConnection::disconnectFromBus("names");
    }

    bool conflictsSoon(const ShortcutKey& key, bool expected = true) {
        return test::runLoopUntil([&] { return keys->conflicts(key) == expected; }, std::chrono::seconds(2));
    }

    TemporaryFolder folder;
    std::filesystem::path fcitxFile = folder.path() / "config";
    XServer server;
    PrivateBus bus;
    QDBusConnection control{QString()};
    std::unique_ptr<DesktopSwitchKeys> keys;
    const ShortcutKey controlSpace{49, {Modifier::rightControl}};
    const ShortcutKey superSpace{49, {Modifier::rightCommand}};
    const ShortcutKey altGrave{50, {Modifier::leftOption}};
};

TEST_F(SwitchKeys, areThoseOfWhoIsInCharge) {
    EXPECT_THAT(keys->bindings(), IsEmpty());
    EXPECT_FALSE(keys->conflicts(controlSpace)) << "what macOS binds means nothing here";
    control.registerService("org.freedesktop.IBus");
    EXPECT_TRUE(conflictsSoon(superSpace));
    EXPECT_FALSE(keys->conflicts(controlSpace));
    control.registerService("org.fcitx.Fcitx5");
    EXPECT_TRUE(conflictsSoon(controlSpace));
    EXPECT_TRUE(keys->conflicts(superSpace)) << "its group switch, beyond the first two";

    folder.write("config", "[Hotkey/TriggerKeys]\n0=Alt+grave\n1=\n[Hotkey/EnumerateGroupForwardKeys]\n");
    EXPECT_TRUE(conflictsSoon(altGrave));
    EXPECT_FALSE(keys->conflicts(controlSpace));
    folder.write("config", std::string(100000, '\xff') + "[Hotkey/TriggerKeys");
    std::filesystem::last_write_time(fcitxFile, std::filesystem::file_time_type::clock::now());
    EXPECT_TRUE(conflictsSoon(controlSpace)) << "unreadable is like absent";

    control.unregisterService("org.fcitx.Fcitx5");
    EXPECT_TRUE(conflictsSoon(controlSpace, false));
    control.registerService("org.gnome.Shell");
    control.unregisterService("org.freedesktop.IBus");
    EXPECT_TRUE(conflictsSoon(superSpace));
    control.unregisterService("org.gnome.Shell");
    EXPECT_TRUE(conflictsSoon(superSpace, false));
    setLayouts("us,ru", "", "compose:ralt,grp:alt_space_toggle");
    EXPECT_TRUE(conflictsSoon({49, {Modifier::leftOption}}));
    server.kill();
    EXPECT_THAT(keys->bindings(), IsEmpty());
}

class FrontmostApp : public testing::Test {
  protected:
    FrontmostApp() {
        server.startWindowManager();
        observer.onChange = [this](const std::optional<std::string>& id) { reports.push_back(id); };
    }
    bool becomes(const std::optional<std::string>& id) {
        return test::runLoopUntil([&] { return !reports.empty() && reports.back() == id; });
    }
    void set(XDisplay& display, xcb_window_t window, const char* name, std::uint8_t format,
             std::string_view value) {
        xcb_change_property(display.get(), XCB_PROP_MODE_REPLACE, window, display.atom(name), XCB_ATOM_STRING,
                            format, static_cast<std::uint32_t>(value.size() * 8 / format), value.data());
        display.flush();
    }

    XServer server;
    X11FrontmostAppObserver observer;
    std::vector<std::optional<std::string>> reports;
};

TEST_F(FrontmostApp, isTheActiveWindowsByTheNameThatTellsMost) {
    observer.start();
    observer.start();
    ASSERT_EQ(reports.size(), 1U);
    EXPECT_FALSE(reports[0]);
    auto editor = std::make_unique<XTestWindow>("Editor");
    EXPECT_TRUE(becomes("Editor"));
    {
        XTestWindow guest("VirtualBox Machine");
        EXPECT_TRUE(becomes("VirtualBox Machine"));
        editor->focus();
        EXPECT_TRUE(becomes("Editor"));
        guest.focus();
        EXPECT_TRUE(becomes("VirtualBox Machine"));
    }
    EXPECT_TRUE(becomes("Editor")) << "the window in front was closed";

    XDisplay display;
    set(display, editor->id(), "_KDE_NET_WM_DESKTOP_FILE", 8, "/usr/share/applications/org.kde.krdc.desktop");
    EXPECT_TRUE(becomes("org.kde.krdc"));
    set(display, editor->id(), "_GTK_APPLICATION_ID", 8, "org.example.Shell");
    set(display, editor->id(), "WM_CLASS", 8, std::string_view("xfreerdp\0Xfreerdp", 17));
    set(display, editor->id(), "_KDE_NET_WM_DESKTOP_FILE", 8, ".desktop");
    EXPECT_TRUE(becomes("Xfreerdp")) << "what shows another computer wins over a name nobody knows";
    editor.reset();
    EXPECT_TRUE(becomes(std::nullopt));
}

TEST_F(FrontmostApp, isAbsentWhereThePropertiesSayNothing) {
    observer.start();
    XTestWindow window("Known");
    ASSERT_TRUE(becomes("Known"));
    XDisplay display;
    set(display, window.id(), "WM_CLASS", 32, "\1\2\3\4\5\6\7\b");
    EXPECT_TRUE(becomes(std::nullopt));
    set(display, window.id(), "WM_CLASS", 8, std::string(1U << 18U, '\xff'));
    EXPECT_TRUE(becomes(std::string(1024, '\xff')));
    set(display, window.id(), "WM_CLASS", 8, "");
    EXPECT_TRUE(becomes(std::nullopt));
    reports.clear();
    const xcb_window_t gone = 0x7FFFFFF;
    xcb_change_property(display.get(), XCB_PROP_MODE_REPLACE, display.root(),
                        display.atom("_NET_ACTIVE_WINDOW"), XCB_ATOM_WINDOW, 32, 1, &gone);
    display.flush();
    EXPECT_TRUE(test::staysFalse([&] { return !reports.empty(); })) << "a window that is not there is none";
}

TEST_F(FrontmostApp, isLookedForAgainOnTheNextServer) {
    XTestWindow window("Before");
    observer.start();
    ASSERT_TRUE(becomes("Before"));
    server.kill();
    EXPECT_TRUE(becomes(std::nullopt));
    EXPECT_TRUE(observer.isLost());
    observer.start();
    EXPECT_TRUE(observer.isLost());
    XServer next;
    next.startWindowManager();
    XTestWindow later("After");
    observer.start();
    EXPECT_TRUE(becomes("After"));
}

} // namespace
