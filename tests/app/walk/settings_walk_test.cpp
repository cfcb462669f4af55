// Rules made, paused and deleted in the Settings window, the Diagnostics pane, and what a screen reader is
// told of all of it.
#include "app/walk/walk_rig.h"

#include <algorithm>
#include <filesystem>
#include <set>

using namespace hopsel::test;
using namespace hopsel::session;
using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::Not;

namespace {

class SettingsWalk : public Walk {
  protected:
    SettingsWalk() {
        startWithoutIntroduction();
        const ChildProcess another(program()); // brings the Settings window forward
        expectSeen("General");
    }
    void addShiftSpace() {
        click("Switch Rules");
        click("+ Add Rule");
        for (const bool isFirst : {true, false}) {
            expectSeen("Trigger key: Press a key to set");
            keyboard.tap(key::space);
            expectSeen("Trigger key: Tap the key you want to use…");
            if (isFirst) keyboard.tap(key::escape); // ends the capture alone
        }
        pressShiftSpace();
        expectSeen("Trigger key: Left Shift + Space");
        click("Add");
        expectSeen("Delete, Left Shift + Space");
    }
    void expectNothingSwitches(int group) {
        pressShiftSpace();
        EXPECT_FALSE(layouts.waitForGroup(group == 0 ? 1 : 0, 300ms));
        EXPECT_EQ(layouts.lockedGroup(), group);
    }
};

} // namespace

TEST_F(SettingsWalk, RuleIsMadeByPressingItsKeysPausedAndDeleted) {
    addShiftSpace();
    expectSwitched(1, [this] { pressShiftSpace(); });
    EXPECT_THAT(settings(), HasSubstr("\"leftShift\""));

    click("Left Shift + Space"); // its switch comes first
    EXPECT_TRUE(
        reader.waitUntil([&] { return settings().find("\"enabled\" : false") != std::string::npos; }));
    click("Switch Rules"); // so that the keys press nothing else
    expectNothingSwitches(1);
    click("Left Shift + Space");
    EXPECT_TRUE(reader.waitUntil([&] { return settings().find("\"enabled\" : true") != std::string::npos; }));
    expectSwitched(0, [this] { pressShiftSpace(); });

    click("Delete, Left Shift + Space");
    expectGone("Delete, Left Shift + Space");
    EXPECT_TRUE(reader.waitUntil([&] { return settings().find("leftShift") == std::string::npos; }));
    expectNothingSwitches(0);
}

TEST_F(SettingsWalk, CaptureTakesACombinationOfTheWindowManagers) {
    click("Switch Rules");
    click("+ Add Rule");
    expectSeen("Trigger key: Press a key to set");
    EXPECT_TRUE(reader.find("Input switch rules", "heading"));
    EXPECT_FALSE(reader.find("+ Add Rule")->isEnabled) << "what is beneath the dialog is out of reach";
    const auto seen = reader.look();
    EXPECT_EQ(std::count_if(seen.begin(), seen.end(), [](const auto& each) { return each.role == "dialog"; }),
              1);
    click("Trigger key: Press a key to set");
    expectSeen("Trigger key: Tap the key you want to use…");
    pressWith(key::leftAlt, KEY_F4);
    expectSeen("Trigger key: Left Alt + F4");
    keyboard.press(key::escape); // and kept down until the end, as by `quitFromTray`
    expectGone("Cancel");
    running->kill(SIGTERM);
    expectEnded();
    keyboard.release(key::escape);
}

TEST_F(SettingsWalk, DiagnosticsRecordsProbesAndSavesWithoutWhatWasTyped) {
    addShiftSpace();
    click("+ Add Rule");
    click("Trigger key: Press a key to set");
    expectSeen("Trigger key: Tap the key you want to use…");
    tapTrigger();
    expectSeen("Trigger key: Right Super");
    click("Add");
    expectSeen("Delete, Right Super");
    click("Diagnostics");
    expectSeen("Recent events");
    for (const std::uint16_t letter : {key::q, key::x, key::z}) keyboard.tap(letter);
    click("Check Right Super");
    expectSeen("Checking — press Right Super once.");
    tapTrigger();
    expectSeen("OK: Right Super arrived as expected.");
    // The list above grows by what was pressed last, and moves the button: a person would aim again.
    for (int attempt = 0; attempt < 5 && !sees("Cancel"); ++attempt) {
        click("Save report…");
        reader.waitUntil([&] { return sees("Cancel"); }, 2s);
    }
    EXPECT_TRUE(sees("Cancel"));
    keyboard.tap(key::enter);
    expectGone("Cancel");
    std::filesystem::path report;
    EXPECT_TRUE(reader.waitUntil([&] {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(home.path()))
            if (entry.path().extension() == ".txt") report = entry.path();
        return !report.empty();
    }));
    const std::string text = hopsel::contents(report);
    EXPECT_THAT(text, HasSubstr("rightCommand"));
    for (const char* code : {"keyCode 12", "keyCode 7", "keyCode 6"}) EXPECT_THAT(text, Not(HasSubstr(code)));
}

TEST_F(SettingsWalk, EverythingThatTakesTheFocusSaysWhatItIs) {
    addShiftSpace();
    const std::set<std::string> roles{"page tab", "check box", "push button", "combo box", "text"};
    for (const char* pane : {"General", "Input Sources", "Switch Rules", "Diagnostics", "About"}) {
        click(pane);
        EXPECT_TRUE(reader.waitUntil([&] {
            const auto row = reader.find(pane, "page tab");
            return row && row->isSelected;
        }));
        for (const SeenWidget& widget : reader.look()) {
            if (!widget.isFocusable) continue;
            EXPECT_FALSE(widget.name.empty() && widget.description.empty()) << pane << ": " << widget.role;
            EXPECT_TRUE(roles.count(widget.role) == 1) << pane << ": " << widget.role << ' ' << widget.name;
            EXPECT_TRUE(widget.role != "combo box" ||
                        widget.description.find("Input source") != std::string::npos);
        }
    }
    // By Tab alone: from the sidebar through every control of the pane and round again.
    click("Switch Rules");
    std::vector<std::string> order;
    for (int i = 0; i < 12; ++i) {
        keyboard.tap(key::tab);
        for (const SeenWidget& widget : reader.look())
            if (widget.isFocused) order.push_back(widget.name);
    }
    EXPECT_THAT(order, testing::IsSupersetOf({"Left Shift + Space", "Russian", "English (US)",
                                              "Delete, Left Shift + Space", "+ Add Rule", "Switch Rules"}));
}
