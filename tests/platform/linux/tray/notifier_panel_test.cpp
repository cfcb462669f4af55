#include "panel_rig.h"

#include <csignal>
#include <regex>

namespace hopsel::test {
namespace {

using session::ChildProcess;
using testing::HasSubstr;

constexpr auto patience = std::chrono::seconds(10);

class NotifierPanel : public PanelRig {
  protected:
    void startPanel(const std::string& argument = {}) {
        ChildProcess::Options options;
        options.program = HOPSEL_NOTIFIER_PANEL;
        options.arguments = {argument};
        options.output = ChildProcess::Output::capture;
        panel = std::make_unique<ChildProcess>(options);
        ASSERT_TRUE(panel->waitForLine("ready", patience));
    }
    void expectItem() {
        const auto line = panel->waitForLine("item ", patience);
        ASSERT_TRUE(line);
        item = line->substr(5);
    }

    /// The answer as text.
    static std::string call(const std::string& service, const std::string& path, const std::string& method,
                            const std::vector<std::string>& arguments) {
        ChildProcess::Options options;
        options.program = "gdbus";
        options.package = "libglib2.0-bin";
        options.arguments = {"call", "--session", "-d", service, "-o", path, "-m", method};
        options.arguments.insert(options.arguments.end(), arguments.begin(), arguments.end());
        return session::runProgram(options);
    }
    std::string toolTip() const {
        return call(item, "/StatusNotifierItem", "org.freedesktop.DBus.Properties.Get",
                    {"org.kde.StatusNotifierItem", "ToolTip"});
    }
    std::string callMenu(const std::string& method, const std::vector<std::string>& arguments) const {
        return call(item, "/MenuBar", "com.canonical.dbusmenu." + method, arguments);
    }
    /// The entry's identifier and properties, read as a panel does before it opens the menu.
    std::pair<std::string, std::string> entry(const std::string& label) const {
        callMenu("AboutToShow", {"0"});
        const std::string layout = callMenu("GetLayout", {"0", "int32 -1", "[]"});
        std::smatch found;
        if (!std::regex_search(layout, found, std::regex("\\((\\d+), (\\{[^}]*'" + label + "'[^}]*\\})")))
            ADD_FAILURE() << label << " is not in " << layout;
        return {found[1], found[2]};
    }
    void click(const std::string& label) const {
        callMenu("Event", {entry(label).first, "clicked", "<0>", "0"});
    }

    std::unique_ptr<ChildProcess> panel;
    std::string item; ///< the service of the item that the panel was told of last
};

TEST_F(NotifierPanel, ShowsTheItemHoweverLateItComesAndAgainAfterACrash) {
    makeController(little);
    ASSERT_TRUE(waitForHost(false));
    startPanel("without-host");
    EXPECT_TRUE(staysFalse([&] { return controller->item() != nullptr; })) << "nobody would show it";
    call("org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher",
         "org.kde.StatusNotifierWatcher.RegisterStatusNotifierHost", {"org.kde.StatusNotifierHost-1"});
    expectItem();
    ASSERT_TRUE(waitForHost(true));

    panel->kill(SIGKILL);
    ASSERT_TRUE(waitForHost(false));
    startPanel();
    expectItem();
    EXPECT_TRUE(waitForHost(true));
    EXPECT_THAT(hosts, testing::ElementsAre(false, true, false, true));
}

TEST_F(NotifierPanel, ShowsTheStateAndItsClicksReachTheModel) {
    model.addRule(trigger::ModifierTap{ModifierKey::rightCommand}, fakes::korean, fakes::english);
    startPanel();
    makeController(little);
    expectItem();
    EXPECT_THAT(toolTip(), HasSubstr("'Hopsel, ABC'"));
    EXPECT_THAT(entry("✓ Working").second, HasSubstr("'icon-data'"));
    const auto [id, properties] = entry("Input Switching");
    EXPECT_THAT(properties, HasSubstr("'toggle-state': <1>"));

    click("Input Switching");
    EXPECT_FALSE(model.engineEnabled());
    EXPECT_THAT(entry("Input Switching").second, HasSubstr("'toggle-state': <0>"));
    EXPECT_EQ(entry("Input Switching").first, id) << "a click in a menu that is still open would be lost";
    entry("Paused");
    EXPECT_THAT(toolTip(), HasSubstr("'Hopsel, ABC, Paused'"));
    const auto pressMiddleButton = [&] {
        call(item, "/StatusNotifierItem", "org.kde.StatusNotifierItem.SecondaryActivate", {"300", "200"});
    };
    pressMiddleButton();
    EXPECT_TRUE(runLoopUntil([&] { return model.engineEnabled(); }));

    rig.directory->current = "hangul";
    model.currentSourceChanged();
    EXPECT_TRUE(runLoopUntil([&] { return toolTip().find("'Hopsel, Korean'") != std::string::npos; }));
    call(item, "/StatusNotifierItem", "org.kde.StatusNotifierItem.Activate", {"300", "200"});
    EXPECT_TRUE(runLoopUntil([&] { return controller->menu()->isVisible(); }));
}

TEST_F(NotifierPanel, SwitchesToTheSourceThatIsClickedAndListsOnlyTheFirstOfManyRules) {
    for (std::uint16_t key = 0; key < 40; ++key)
        model.addRule(trigger::Shortcut{{key, {ModifierKey::leftControl, ModifierKey::leftOption}}},
                      fakes::korean, fakes::english);
    startPanel();
    makeController(little);
    expectItem();
    entry("31 more");
    click("Korean");
    ASSERT_TRUE(runLoopUntil([&] { return !rig.engine->requested.empty(); }));
    const auto& asked = std::get<action::Toggle>(rig.engine->requested.back().action);
    EXPECT_EQ(asked.sourceA.sourceId, fakes::korean.id);
    EXPECT_EQ(asked.sourceB.sourceId, fakes::korean.id) << "whatever is current";
}

TEST_F(NotifierPanel, IsPreferredUnlessAnItemOfTheOtherKindHasBeenMade) {
    std::vector<TrayKind> told;
    const auto comes = [&](TrayKind kind) {
        return runLoopUntil([&] { return !told.empty(); }) && std::exchange(told, {}) == std::vector{kind};
    };
    TrayHost host(std::make_shared<BusLink>(bus_address::session), nullptr, true,
                  {much.withLess, little.withNone});
    host.start([&](TrayKind kind) { told.push_back(kind); });
    ASSERT_TRUE(comes(TrayKind::none));
    auto trayer = startTrayer();
    ASSERT_TRUE(comes(TrayKind::xEmbed));
    startPanel();
    ASSERT_TRUE(comes(TrayKind::statusNotifier));
    panel.reset();
    startPanel();
    EXPECT_TRUE(staysFalse([&] { return !told.empty(); }, much.withLess)) << "worth waiting for";
    panel.reset();
    ASSERT_TRUE(comes(TrayKind::xEmbed));
    host.settleOn(TrayKind::xEmbed);
    startPanel();
    trayer.reset();
    EXPECT_TRUE(comes(TrayKind::none));
    trayer = startTrayer();
    EXPECT_TRUE(comes(TrayKind::xEmbed));
}

} // namespace
} // namespace hopsel::test
