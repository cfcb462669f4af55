// Recording, warnings and report through the model.
#include "support/fakes/model_rig.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace hopsel {
namespace {

using namespace fakes;
using namespace key_event_kind;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class ModelDiagnostics : public testing::Test, protected ModelRig {
  protected:
    static constexpr ModifierKey trigger = ModifierKey::rightCommand;

    ModelDiagnostics() {
        launch();
        model->addRule(trigger::Shortcut{{49, {ModifierKey::leftShift}}}, korean, english);
        model->addRule(trigger::ModifierTap{ModifierKey::leftOption}, korean, english);
        model->setRuleEnabled(model->rules()[1].id, false);
        model->addRule(trigger::ModifierTap{trigger}, english, korean);
        calls.clear();
    }
};

TEST_F(ModelDiagnostics, recordWhileTheyAreShown) {
    record(1, KeyDown{});
    runningApps->running = {"com.parallels.desktop", "org.hammerspoon.Hammerspoon"};
    model->setDiagnosticsVisible(true);
    record(1, KeyDown{});
    model->setDiagnosticsVisible(true);
    EXPECT_EQ(recorder->entries().size(), 1U) << "shown twice it goes on";
    EXPECT_EQ(model->detectedApps().size(), 2U);

    delivery->location = "/somewhere/report.txt";
    model->saveReport();
    model->copyReport();
    model->startProbe();
    model->setDiagnosticsVisible(false);
    record(2, KeyDown{});
    EXPECT_EQ(recorder->entries().size(), 1U) << "kept for a report";
    EXPECT_TRUE(model->lastSavedReport() && model->reportCopied());
    runningApps->running.clear();
    model->setDiagnosticsVisible(true);
    EXPECT_FALSE(model->lastSavedReport() || model->reportCopied() || model->probeResult());
    EXPECT_THAT(model->detectedApps(), IsEmpty());
}

TEST_F(ModelDiagnostics, reportTheStateAndDeliverIt) {
    runningApps->running = {"com.parallels.desktop"};
    model->setDiagnosticsVisible(true);
    settings->accessibility = false;
    emitEvent(engine_event::ShortcutStatusChanged{ShortcutStatus::unavailable});
    for (const double time : {1.0, 2.0, 3.5})
        recorder->record(diagnostic_kind::Engine{engine_event::Reset{ResetReason::tapDisabled}}, time);
    const std::string report = model->buildReport();
    EXPECT_THAT(report, HasSubstr("\n생성: 2026-11-16T10:42:23+09:00\n버전: 0.1.0\n"));
    EXPECT_THAT(report, HasSubstr("접근성 미허용\n엔진: running / 조합 키 탭: unavailable\n"));
    EXPECT_THAT(report,
                HasSubstr("\n2. 끔 | 단독 탭: leftOption | hangul ⇄ abc\n3. 사용 | 단독 탭: rightCommand | "
                          "abc ⇄ hangul\n\n[감지된 입력 관련 앱]\n- Parallels\n\n[경고]\n- 입력 감지가 "
                          "짧은 시간에 3번 중단됐습니다.\n"));
    EXPECT_THAT(report, HasSubstr("\n  -2.50  리셋: tapDisabled\n"));

    model->composeReportMail();
    EXPECT_EQ(delivery->copied, report);
    EXPECT_THAT(calls, ElementsAre("copy", "mail mailto:support@hopsel.example"))
        << "what the mail asks to paste is there before it opens";
}

} // namespace
} // namespace hopsel
