// Recording, probe, warnings and report through the model.
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
using testing::Optional;

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
    int revision() const { return model->diagnosticsFeed().revision(); }
};

TEST_F(ModelDiagnostics, recordWhileTheyAreShown) {
    record(1, KeyDown{});
    EXPECT_EQ(revision(), 0);
    runningApps->running = {"com.parallels.desktop", "org.hammerspoon.Hammerspoon"};
    model->setDiagnosticsVisible(true);
    EXPECT_EQ(revision(), 1);
    record(1, KeyDown{});
    model->setDiagnosticsVisible(true);
    EXPECT_EQ(revision(), 2);
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
    recorder->clear();
    EXPECT_EQ(revision(), 4);

    runningApps->running.clear();
    model->setDiagnosticsVisible(true);
    EXPECT_FALSE(model->lastSavedReport() || model->reportCopied() || model->probeResult());
    EXPECT_THAT(model->detectedApps(), IsEmpty());
}

TEST_F(ModelDiagnostics, probeTheFirstEnabledTapFromItsStartOn) {
    model->setDiagnosticsVisible(true);
    record(99, ModifierDown{trigger});
    EXPECT_FALSE(model->probeResult());
    model->startProbe();
    EXPECT_EQ(revision(), 3);
    EXPECT_EQ(model->probeResult(), ProbeResult::noSignal) << "the press before the start does not count";
    record(100, ModifierDown{ModifierKey::leftOption});
    EXPECT_EQ(model->probeResult(), ProbeResult::arrivedAsOtherKey);
    EXPECT_THAT(model->diagnosticWarnings(),
                ElementsAre(ConflictWarning(conflict_warning::TriggerArrivesAsOtherKey{trigger})));
    record(101, ModifierDown{trigger});
    EXPECT_EQ(model->probeResult(), ProbeResult::received);
    EXPECT_THAT(model->diagnosticWarnings(), IsEmpty());

    model->setRuleEnabled(model->rules()[2].id, false);
    const int before = revision();
    model->startProbe();
    EXPECT_FALSE(model->probeTrigger() || model->probeResult());
    EXPECT_EQ(revision(), before);
}

TEST_F(ModelDiagnostics, reportTheStateAndDeliverIt) {
    runningApps->running = {"com.parallels.desktop"};
    model->setDiagnosticsVisible(true);
    settings->accessibility = false;
    emitEvent(engine_event::ShortcutStatusChanged{ShortcutStatus::unavailable});
    for (const double time : {1.0, 2.0, 3.5})
        recorder->record(diagnostic_kind::Engine{engine_event::Reset{ResetReason::tapDisabled}}, time);
    const std::string report = model->buildReport();
    EXPECT_THAT(
        report,
        HasSubstr("\n생성: 2026-11-16T10:42:23+09:00\n버전: 0.1.0\nmacOS: 14.5.0 (arm64)\n"
                  "권한: 입력 모니터링 허용 / 접근성 미허용\n엔진: running / 조합 키 탭: unavailable\n"));
    EXPECT_THAT(report,
                HasSubstr("\n2. 끔 | 단독 탭: leftOption | hangul ⇄ abc\n3. 사용 | 단독 탭: rightCommand | "
                          "abc ⇄ hangul\n\n[감지된 입력 관련 앱]\n- Parallels\n\n[경고]\n- 입력 감지가 "
                          "짧은 시간에 3번 중단됐습니다.\n"));
    EXPECT_THAT(report, HasSubstr("\n  -2.50  리셋: tapDisabled\n"));

    model->saveReport();
    EXPECT_FALSE(model->lastSavedReport()) << "cancelled";
    delivery->location = "/somewhere/report.txt";
    model->saveReport();
    EXPECT_THAT(model->lastSavedReport(), Optional(std::filesystem::path("/somewhere/report.txt")));
    EXPECT_FALSE(model->reportCopied());
    model->composeReportMail();
    EXPECT_TRUE(model->reportCopied());
    EXPECT_EQ(delivery->saved, report);
    EXPECT_EQ(delivery->copied, report);
    const std::string save = "save Hopsel-report-20261116-104223.txt";
    EXPECT_THAT(calls, ElementsAre(save, save, "copy", "mail mailto:support@hopsel.example"))
        << "what the mail asks to paste is there before it opens";
}

TEST_F(ModelDiagnostics, writeTimesWithANumericOffset) {
    const std::pair<QTimeZone, std::string> zones[] = {{QTimeZone::utc(), "01:42:23+00:00"},
                                                       {QTimeZone(-(3 * 3600 + 1800)), "22:12:23-03:30"},
                                                       {QTimeZone(5 * 3600 + 2700), "07:27:23+05:45"}};
    for (const auto& [zone, text] : zones) {
        AppModel::Parts parts{store,
                              engine,
                              directory,
                              loginItem,
                              settings,
                              preferences,
                              "1",
                              [](const ShortcutKey&) { return false; },
                              recorder,
                              runningApps,
                              delivery,
                              secureInput,
                              {[] { return 0.0; },
                               [] { return QDateTime(QDate(2026, 11, 16), QTime(1, 42, 23), Qt::UTC); }, zone,
                               "", ""}};
        EXPECT_THAT(AppModel(std::move(parts)).buildReport(), HasSubstr(text));
    }
}

} // namespace
} // namespace hopsel
