#define G_SETTINGS_ENABLE_BACKEND // to change a setting without a bus

#include "platform/linux/switch_keys/desktop_switch_keys.h"

#include "platform/linux/switch_keys/fcitx_switch_keys.h"
#include "platform/linux/switch_keys/key_accelerator.h"
#include "platform/linux/switch_keys/settings_switch_keys.h"
#include "platform/linux/switch_keys/xkb_switch_keys.h"
#include "session/private_bus.h"
#include "session/x_layouts.h"
#include "session/x_server.h"
#include "support/bus_links.h"
#include "support/qt_waiting.h"

#include <filesystem>
#include <gio/gsettingsbackend.h>
#include <gmock/gmock.h>

namespace hopsel {
namespace {

using namespace std::string_literals;
using test::runLoopUntil;
using testing::Contains;
using testing::IsEmpty;
using testing::UnorderedElementsAreArray;

TEST(KeyAccelerator, BothSpellingsGiveThePositionOnAnAmericanKeyboardAndJunkNone) {
    constexpr auto command = ModifierKey::leftCommand, option = ModifierKey::leftOption,
                   shift = ModifierKey::leftShift, control = ModifierKey::leftControl;
    const struct {
        const char* accelerator;
        ShortcutKey expected;
    } cases[] = {
        {"<Super>space", {49, {command}}},
        {"<Primary><Mod1>Space", {49, {control, option}}},
        {"<ctrl><META>z", {6, {control, option}}},
        {"Control+Shift+space", {49, {control, shift}}},
        {"Super+A", {0, {command}}},
        {"<Alt>exclam", {18, {option}}},
        {"Control+plus", {24, {control}}},
        {"Menu", {110, {}}},
        {"XF86Keyboard", {256 + 374, {}}},
    };
    for (const auto& tested : cases)
        EXPECT_EQ(shortcutFromAccelerator(tested.accelerator), tested.expected) << tested.accelerator;
    for (const std::string& text :
         {""s, "disabled"s, "<Super>"s, "<Superspace"s, "<Hyper>space"s, "<>space"s, "Super+"s, "+space"s,
          "Foo+space"s, "Control+Shift_L"s, "Meta_L"s, "Caps_Lock"s, "Hangul"s, "Zenkaku_Hankaku"s,
          "<Super>sp ace"s, "space\0"s, "<Super>\xEA\xB0\x80"s, std::string(1'000'000, '<')})
        EXPECT_EQ(shortcutFromAccelerator(text), std::nullopt) << text.substr(0, 40);
}

std::vector<ShortcutKey> keys(const std::vector<std::string>& accelerators) {
    std::vector<ShortcutKey> result = shortcutsFromAccelerators(accelerators);
    EXPECT_EQ(result.size(), accelerators.size());
    return result;
}

const std::vector<std::string> fcitxStock{"Control+space", "Super+space", "Shift+Super+space"};

TEST(FcitxSwitchKeys, ListsThatTheFileHasReplaceTheStockOnes) {
    const struct {
        std::string config;
        std::vector<std::string> expected;
    } cases[] = {
        {"", fcitxStock},
        {"[Hotkey]\n# none\nTriggerKeys=\nEnumerateGroupForwardKeys=\nEnumerateGroupBackwardKeys=\n", {}},
        {"[Hotkey]\nEnumerateGroupForwardKeys=\n\n[Hotkey/TriggerKeys]\r\n0=Alt+space\r\n 1 = Hangul\n"
         "2=Shift+space\n[Hotkey/EnumerateGroupBackwardKeys]\n[Hotkey/DeactivateKeys]\n0=F1\n"
         "[Hotkey/PrevPage]\n0=Up\n[Behavior]\nTriggerKeys=\n0=Down\n",
         {"Alt+space", "Shift+space", "F1"}},
        {"0=F1\n[\n[]\n]\n=\n[Hotkey/\n[Hotkey/TriggerKeysX]\n0=F2\n"s + '\0' + "\xFF\n", fcitxStock},
        {std::string(100'000, '['), fcitxStock},
    };
    for (const auto& tested : cases)
        EXPECT_THAT(fcitxSwitchKeys(tested.config), UnorderedElementsAreArray(keys(tested.expected)))
            << tested.config.substr(0, 200);
}

TEST(FcitxSwitchKeys, FileIsReadAgainWhenItIsAnother) {
    const session::TemporaryFolder folder;
    const auto file = folder.path() / "config";
    FcitxSwitchKeys source(file);
    ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
    EXPECT_EQ(source.read().size(), fcitxStock.size()) << "would block";
    std::filesystem::remove(file);
    folder.write("config", "[Hotkey/TriggerKeys]\n0=F1\n");
    EXPECT_THAT(source.read(), Contains(keys({"F1"})[0]));
}

TEST(SettingsSwitchKeys, StockKeysStandInForWhatIsNotInstalled) {
    const session::TemporaryFolder folder;
    folder.write("test.gschema.xml", R"(<schemalist>
 <schema id="org.freedesktop.ibus.general.hotkey" path="/ibus/">
  <key name="triggers" type="as"><default>['&lt;Control&gt;F1', 'junk']</default></key></schema>
 <schema id="org.gnome.desktop.wm.keybindings" path="/gnome/">
  <key name="switch-input-source" type="s"><default>'F3'</default></key></schema>
</schemalist>)");
    session::ChildProcess::Options compiler;
    compiler.program = "glib-compile-schemas";
    compiler.arguments = {folder.path()};
    compiler.package = "libglib2.0-bin";
    session::runProgram(compiler);
    StoredSettings::Storage storage;
    storage.schemas =
        g_settings_schema_source_new_from_directory(folder.path().c_str(), nullptr, TRUE, nullptr);
    storage.values = g_memory_settings_backend_new();
    {
        auto ibus = SettingsSwitchKeys::ofIBus(storage);
        EXPECT_EQ(ibus.read(), keys({"Control+F1", "Control+Shift+F1"}));
        auto gnome = SettingsSwitchKeys::ofGnome(storage);
        EXPECT_EQ(gnome.read(),
                  keys({"Super+space", "XF86Keyboard", "Shift+Super+space", "Shift+XF86Keyboard"}))
            << "a value of another type";
        SettingsSwitchKeys missing("org.example.missing", {{"key", {"F1"}}}, storage);
        EXPECT_EQ(missing.read(), keys({"F1"}));
    }
    g_settings_schema_source_unref(storage.schemas);
    g_object_unref(storage.values);
}

TEST(XkbSwitchKeys, OptionsWithARealKeyAreReadFromTheServer) {
    XkbSwitchKeys source;
    {
        session::XServer server;
        EXPECT_THAT(source.read(), IsEmpty());
        session::setLayouts("us,ru", "",
                            "compose:ralt,grp:win_space_toggle,grp:alt_shift_toggle,grp:menu_toggle");
        EXPECT_EQ(source.read(), keys({"Super+space", "Menu"}));
        session::setLayouts("us,ru");
        EXPECT_THAT(source.read(), IsEmpty());
        server.kill();
        EXPECT_THAT(source.read(), IsEmpty());
    }
    const session::XServer next;
    session::setLayouts("us,ru", "", "grp:sclk_toggle");
    EXPECT_EQ(source.read(), keys({"Scroll_Lock"}));
    for (const std::string& junk : {""s, "grp:menu_toggle"s, "\0\0\0\0\xFF,,grp:\0grp:menu_toggle"s})
        EXPECT_THAT(xkbSwitchKeys(junk), IsEmpty());
}

TEST(DesktopSwitchKeys, CountWhileTheirProgramIsInChargeOfTheSession) {
    const auto fcitx = QStringLiteral("org.fcitx.Fcitx5"), ibus = QStringLiteral("org.freedesktop.IBus"),
               gnome = QStringLiteral("org.gnome.Shell");
    session::PrivateBus bus;
    const auto reading = [](const char* key) { return [key] { return keys({key}); }; };
    const DesktopSwitchKeys::Readers readers{reading("F1"), reading("F2"), reading("F3"), reading("F4")};
    const auto become = [](const DesktopSwitchKeys& desktop, const std::vector<std::string>& expected) {
        return runLoopUntil([&] { return desktop.bound() == keys(expected); });
    };
    QDBusConnection owner =
        QDBusConnection::connectToBus(QString::fromStdString(bus.address()), QStringLiteral("owning"));
    const DesktopSwitchKeys desktop(test::linkTo(bus.address()), readers);
    EXPECT_EQ(desktop.bound(), keys({"F4"}));
    owner.registerService(ibus);
    EXPECT_TRUE(become(desktop, {"F4", "F2"}));
    owner.registerService(fcitx); // and IBus's name still has an owner
    EXPECT_TRUE(become(desktop, {"F4", "F1"}));
    owner.registerService(gnome);
    EXPECT_TRUE(become(desktop, {"F4", "F3", "F1"}));
    owner.unregisterService(fcitx);
    EXPECT_TRUE(become(desktop, {"F4", "F3"}));
    bus.kill();
    EXPECT_TRUE(become(desktop, {"F4"}));
    QDBusConnection::disconnectFromBus(QStringLiteral("owning"));
}

TEST(DesktopSwitchKeys, EveryBoundKeyConflictsAndTheStockKeysOfMacOSDoNot) {
    std::vector<ShortcutKey> bound;
    const DesktopSwitchKeys desktop(test::linkTo(""),
                                    {nullptr, nullptr, nullptr, [&bound] { return bound; }});
    const ShortcutKey stock{49, {ModifierKey::leftControl}};
    EXPECT_FALSE(desktop.conflicts(stock));
    bound = keys({"<Super>space", "<Alt><Shift>z", "F5"});
    for (const ShortcutKey& key : bound) EXPECT_TRUE(desktop.conflicts(key)) << key.storageString();
    EXPECT_TRUE(desktop.conflicts({49, {ModifierKey::rightCommand}})) << "sides do not matter";
    EXPECT_FALSE(desktop.conflicts(stock));
}

} // namespace
} // namespace hopsel
