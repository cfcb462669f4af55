#include "core/platform/input_source_switcher.h"
#include "platform/macos/base/cf_values.h"
#include "platform/macos/macos_test.h"
#include "platform/macos/sources/layout_detour.h"
#include "platform/macos/sources/mac_input_source_catalog.h"

namespace hopsel {
namespace {

using macos_fakes::addLayout;
using macos_fakes::addSource;
using macos_fakes::system;
using testing::ElementsAre;
using testing::IsEmpty;

class InputSources : public MacosTest {
  protected:
    LiveInputSourceService service() {
        return {catalog, &uptimeSeconds, [this](double seconds) {
                    pumps.push_back(seconds);
                    runFor(seconds);
                }};
    }
    void TearDown() override {
        catalog.reset();
        MacosTest::TearDown();
    }

    std::shared_ptr<MacInputSourceCatalog> catalog = std::make_shared<MacInputSourceCatalog>();
    std::vector<double> pumps;
};

TEST_F(InputSources, AreListedInOrderWithWhatTheySayOfThemselves) {
    const void* elements[] = {CFSTR("ko"), kCFBooleanTrue, CFSTR("en")};
    const auto languages =
        CfRef<CFArrayRef>::adopt(CFArrayCreate(nullptr, elements, 3, &kCFTypeArrayCallBacks));
    addSource({{kTISPropertyInputSourceID, CFSTR("hangul")},
               {kTISPropertyLocalizedName, CFSTR("두벌식")},
               {kTISPropertyInputSourceType, CFSTR("TISTypeKeyboardInputMode")},
               {kTISPropertyInputSourceLanguages, languages.get()},
               {kTISPropertyInputSourceIsSelectCapable, kCFBooleanTrue},
               {kTISPropertyInputSourceCategory, kTISCategoryKeyboardInputSource}});
    addSource({{kTISPropertyInputSourceID, CFSTR("palette")},
               {kTISPropertyInputSourceCategory, CFSTR("TISCategoryPaletteInputSource")}});
    addSource({{kTISPropertyLocalizedName, CFSTR("no identifier")},
               {kTISPropertyInputSourceCategory, kTISCategoryKeyboardInputSource}});
    addSource({{kTISPropertyInputSourceID, CFSTR("bare")},
               {kTISPropertyInputSourceCategory, kTISCategoryKeyboardInputSource}});
    addSource({{kTISPropertyInputSourceID, CFSTR("odd")},
               {kTISPropertyLocalizedName, kCFBooleanTrue},
               {kTISPropertyInputSourceLanguages, CFSTR("en")},
               {kTISPropertyInputSourceIsSelectCapable, CFSTR("yes")},
               {kTISPropertyInputSourceCategory, kTISCategoryKeyboardInputSource}});
    const InputSourceInfo hangul{"hangul", "두벌식", "TISTypeKeyboardInputMode", {"ko", "en"}, true, {}};
    EXPECT_THAT(catalog->enabledKeyboardSources(),
                ElementsAre(hangul, InputSourceInfo{"bare", "bare", "", {}, false, {}},
                            InputSourceInfo{"odd", "odd", "", {}, false, {}}));
    EXPECT_THAT(service().availableSourceIDs(), ElementsAre("hangul"));
    system().refusesList = true;
    EXPECT_THAT(catalog->enabledKeyboardSources(), IsEmpty());
}

TEST_F(InputSources, SelectionSaysWhatTheSystemAnswered) {
    system().current = addLayout("abc");
    addLayout("hangul");
    EXPECT_EQ(catalog->select("hangul"), SelectResult(select_result::Selected{}));
    EXPECT_EQ(catalog->currentID(), "hangul");
    EXPECT_EQ(catalog->select("french"), SelectResult(select_result::NotFound{}));
    EXPECT_EQ(catalog->select("\xFF"), SelectResult(select_result::NotFound{}));
    system().selectStatus = paramErr;
    EXPECT_EQ(catalog->select("abc"), SelectResult(select_result::Failed{paramErr}));
    system().refusesList = true;
    EXPECT_EQ(catalog->select("abc"), SelectResult(select_result::NotFound{}));
    system().current = nullptr;
    EXPECT_EQ(catalog->currentID(), std::nullopt);
}

TEST_F(InputSources, SwitchIsVerifiedAsSoonAsItShowsAndForHalfASecond) {
    system().current = addLayout("abc");
    addLayout("hangul");
    EXPECT_TRUE(service().switchTo("abc").verified);
    EXPECT_THAT(pumps, IsEmpty());

    system().selectDelay = 0.012;
    const SwitchOutcome shown = service().switchTo("hangul");
    EXPECT_TRUE(shown.verified);
    EXPECT_NEAR(shown.latencyMs, 12, 0.01) << "the loop must return with the event, not with the step";
    EXPECT_THAT(pumps, ElementsAre(0.005, 0.005, 0.005));

    pumps.clear();
    system().selectDelay = -1;
    const SwitchOutcome never = service().switchTo("abc");
    EXPECT_EQ(never.result, SelectResult(select_result::Selected{}));
    EXPECT_FALSE(never.verified);
    EXPECT_NEAR(never.latencyMs, 500, 5.01);
    EXPECT_NEAR(static_cast<double>(pumps.size()), 100, 1);
}

TEST_F(InputSources, SwitchToAnInputMethodMayPassThroughALayout) {
    const auto add = [](const char* id, CFStringRef type, CFTypeRef isSelectCapable = kCFBooleanTrue) {
        return addSource({{kTISPropertyInputSourceID, hopselConstantString(id)},
                          {kTISPropertyInputSourceType, type},
                          {kTISPropertyInputSourceCategory, kTISCategoryKeyboardInputSource},
                          {kTISPropertyInputSourceIsSelectCapable, isSelectCapable}});
    };
    TISInputSourceRef abc = add("abc", CFSTR("TISTypeKeyboardLayout"));
    TISInputSourceRef hangul = add("hangul", CFSTR("TISTypeKeyboardInputMode"));
    add("off", CFSTR("TISTypeKeyboardLayout"), kCFBooleanFalse);
    LiveInputSourceService service(catalog, &uptimeSeconds, runFor, [&](const std::string& target) {
        return layoutDetour(target, catalog->enabledKeyboardSources(), catalog->currentID());
    });
    const auto waysTo = [&](const std::string& target, TISInputSourceRef from) {
        system().current = from;
        system().selections.clear();
        EXPECT_TRUE(service.switchTo(target).verified);
        EXPECT_EQ(catalog->currentID(), target);
        return system().selections;
    };
    EXPECT_THAT(waysTo("abc", hangul), ElementsAre(abc)) << "a layout needs no way round";
    EXPECT_THAT(waysTo("hangul", abc), ElementsAre(hangul, abc, hangul));
    TISInputSourceRef dvorak = add("dvorak", CFSTR("TISTypeKeyboardLayout"));
    EXPECT_THAT(waysTo("hangul", abc), ElementsAre(dvorak, hangul)) << "one step less";

    system().selectDelay = 0.1;
    system().current = abc;
    EXPECT_NEAR(service.switchTo("hangul").latencyMs, 200, 1);
    system().selectDelay = -1;
    EXPECT_FALSE(service.switchTo("hangul").verified && system().current != hangul);
    EXPECT_EQ(service.switchTo("gone").result, SelectResult(select_result::NotFound{}));
}

TEST_F(InputSources, ChangesAreToldOnceForABurstAndFromTheLoop) {
    int lists = 0;
    int selections = 0;
    catalog->onSourcesChanged = [&] { ++lists; };
    catalog->onSelectedChanged = [&] { ++selections; };
    for (int burst = 0; burst < 3; ++burst)
        macos_fakes::postDistributed(kTISNotifyEnabledKeyboardInputSourcesChanged);
    EXPECT_EQ(lists, 0);
    for (int turn = 0; turn < 5; ++turn) runFor(0);
    EXPECT_EQ(lists, 1);
    EXPECT_EQ(selections, 0);
    macos_fakes::postDistributed(kTISNotifySelectedKeyboardInputSourceChanged);
    runFor(0);
    macos_fakes::postDistributed(kTISNotifySelectedKeyboardInputSourceChanged);
    runFor(0);
    EXPECT_EQ(selections, 2);

    macos_fakes::postDistributed(kTISNotifySelectedKeyboardInputSourceChanged);
    catalog.reset();
    runFor(0);
    EXPECT_EQ(selections, 2) << "nobody is there any more to tell";
}

} // namespace
} // namespace hopsel
