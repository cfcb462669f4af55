// The status item in the top bar of the real shell: what is shown there, and what its clicks do.
#include "model/texts/l10n.h"
#include "platform/linux/gnome/gnome_rig.h"
#include "platform/linux/tray/tray_host.h"
#include "support/bus_links.h"
#include "support/fakes/model_rig.h"
#include "ui/menubar/status_item_controller.h"

namespace hopsel::test {
namespace {

const QString indicator = QStringLiteral("Main.panel.statusArea['app.hopsel.Hopsel']");
/// In the order in which they stand, those beneath others too: kind of state, text.
const QString lines = QStringLiteral("(() => { const told = []; const tell = menu => { for (const item of "
                                     "menu._getMenuItems()) { told.push((item.state === true || "
                                     "item._ornament === 1 ? '*' : '') + (item.label?.text || '-')); "
                                     "if (item.menu) tell(item.menu); } }; tell(%1.menu); "
                                     "return told.join('|'); })()")
                          .arg(indicator);
const QString line = QStringLiteral("%1.menu._getMenuItems().find(item => item.label?.text === '%2')");
const int middleButton = 0x112;

class GnomeIndicator : public testing::Test {
  protected:
    GnomeIndicator() {
        model.addRule(trigger::ModifierTap{ModifierKey::rightCommand}, fakes::korean, fakes::english);
        makeController();
    }
    ~GnomeIndicator() override { l10n::setLanguage(L10nLanguage::en); }

    void makeController() {
        constexpr TrayHost::Patience little{std::chrono::milliseconds(20), std::chrono::milliseconds(20)};
        controller = std::make_unique<StatusItemController>(
            model, std::make_unique<TrayHost>(bus, extension, false, little));
    }
    bool isShown() { return gnome.evaluate("Boolean(" + indicator + ")") == "true"; }
    std::string ask(const QString& property) { return gnome.evaluate(indicator + property); }
    bool says(const std::string& text) {
        return eventually([&] { return gnome.evaluate(lines).find(text) != std::string::npos; });
    }
    std::string labels() { return ask(".get_first_child().get_last_child().labels.join(' ')"); }
    bool isLabelled(const std::string& expected) {
        return eventually([&] { return labels() == "\"" + expected + "\""; });
    }
    GnomeRig gnome;
    fakes::RecordingLog log;
    std::shared_ptr<BusLink> bus = linkTo(gnome.session.busAddress());
    std::shared_ptr<GnomeExtension> extension = std::make_shared<GnomeExtension>(bus, log);
    fakes::ModelRig rig;
    AppModel& model = rig.launch();
    std::unique_ptr<StatusItemController> controller;
};

TEST_F(GnomeIndicator, ShowsTheStateAndDoesWhatIsClicked) {
    ASSERT_TRUE(eventually([&] { return isShown(); }));
    EXPECT_TRUE(controller->hasHost());
    EXPECT_TRUE(says("*Input Switching|-|Current input|ABC|Choose Input Source|Korean|*ABC|-|Switch rules|"));
    EXPECT_TRUE(says("✓ Working|-|Launch at login|Settings…|")) << gnome.evaluate(lines);
    EXPECT_EQ(ask(".accessible_name"), "\"Hopsel, ABC\"");
    EXPECT_TRUE(isLabelled("한 A"));
    rig.directory->current = "hangul";
    model.currentSourceChanged();
    EXPECT_TRUE(says("*Korean|ABC|"));
    EXPECT_EQ(ask(".get_first_child().get_last_child().current"), "0");
    gnome.keepPicture("badge");

    int settings = 0;
    controller->onOpenSettings = [&] { ++settings; };
    gnome.chooseInMenu(indicator, "Settings…");
    EXPECT_TRUE(eventually([&] { return settings == 1; }));
    EXPECT_TRUE(qEnvironmentVariableIsSet("XDG_ACTIVATION_TOKEN")) << "its window comes to the front";
    qunsetenv("XDG_ACTIVATION_TOKEN");
    gnome.chooseInMenu(indicator, "Input Switching");
    EXPECT_TRUE(eventually([&] { return !model.engineEnabled(); }));
    EXPECT_TRUE(says("|Paused|"));
    EXPECT_FALSE(qEnvironmentVariableIsSet("XDG_ACTIVATION_TOKEN"));
    EXPECT_EQ(ask(".get_first_child().get_first_child().icon_name"), "\"media-playback-pause-symbolic\"");
    gnome.clickOn(indicator, middleButton);
    EXPECT_TRUE(eventually([&] { return model.engineEnabled(); }));
    EXPECT_EQ(ask(".menu.isOpen"), "false") << "which is no click that opens it";
    rig.loginItem->refuses = true;
    gnome.chooseInMenu(indicator, "Launch at login");
    EXPECT_TRUE(eventually([&] { return ask(".menu.isOpen") == "false"; }));
    EXPECT_TRUE(says("|Launch at login|")) << "it is not on, whatever was clicked";
    gnome.evaluate(line.arg(indicator, "Choose Input Source") + ".menu._getMenuItems()[1].activate(null)");
    EXPECT_TRUE(eventually([&] { return !rig.engine->requested.empty(); }));
    EXPECT_TRUE(log.lines.empty()) << log.lines.front();
}

TEST_F(GnomeIndicator, SpeaksKoreanAndComesAndGoesWithTheProgram) {
    l10n::setLanguage(L10nLanguage::ko);
    controller->refresh();
    EXPECT_TRUE(says("현재 입력"));
    gnome.openMenu(indicator);
    gnome.keepPicture("korean");
    // Items that are there stay, so that a click in the open menu is not lost.
    gnome.evaluate("global.kept = " + line.arg(indicator, "현재 입력"));
    rig.directory->current = "hangul";
    model.currentSourceChanged();
    EXPECT_TRUE(says("|*Korean|ABC|"));
    EXPECT_EQ(gnome.evaluate("global.kept === " + line.arg(indicator, "현재 입력")), "true");

    gnome.setLocked(true);
    EXPECT_TRUE(eventually([&] { return !controller->hasHost(); }));
    EXPECT_FALSE(isShown());
    gnome.setLocked(false);
    EXPECT_TRUE(says("현재 입력"));
    bus->close();
    EXPECT_TRUE(eventually([&] { return !isShown(); }));

    Caller next(gnome.session.busAddress());
    EXPECT_TRUE(eventually([&] { return next.error("Register").empty(); }));
    EXPECT_FALSE(isShown());
}

} // namespace
} // namespace hopsel::test
