#include "support/fakes/model_rig.h"
#include "support/qt_waiting.h"
#include "ui/menubar/switch_indicator.h"

#include <gtest/gtest.h>

namespace hopsel::test {
namespace {

TEST(SwitchIndicator, ShowsItselfForAMomentWhenItIsWantedAndSomethingSwitched) {
    fakes::ModelRig rig;
    rig.preferences->indicates = false;
    AppModel& model = rig.launch();
    model.addRule(trigger::ModifierTap{ModifierKey::rightCommand}, fakes::korean, fakes::english);
    SwitchIndicator indicator(model);
    const auto isShown = [&] { return indicator.window() != nullptr; };
    const auto switched = [&] {
        engine_event::Switched event;
        event.ruleId = model.rules()[0].id;
        event.to = fakes::english.id;
        rig.engine->onEvent(event);
    };

    switched();
    EXPECT_TRUE(staysFalse(isShown)) << "off";
    model.setIndicatesSwitches(true);
    EXPECT_TRUE(rig.preferences->indicates.value());
    EXPECT_TRUE(staysFalse(isShown)) << "nothing has switched since";
    engine_event::SwitchFailed failed;
    failed.ruleId = model.rules()[0].id;
    rig.engine->onEvent(failed);
    EXPECT_TRUE(staysFalse(isShown));

    switched();
    ASSERT_TRUE(runLoopUntil(isShown));
    const Qt::WindowFlags flags = indicator.window()->windowFlags();
    EXPECT_TRUE(flags & Qt::WindowTransparentForInput && flags & Qt::WindowDoesNotAcceptFocus);
    EXPECT_TRUE(runLoopUntil([&] { return !isShown(); }));
}

} // namespace
} // namespace hopsel::test
