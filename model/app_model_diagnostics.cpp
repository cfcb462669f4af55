// Recording, the probe of the trigger key, and the bug report.
#include "core/diagnostics/bug_report_mail.h"
#include "core/diagnostics/report_builder.h"
#include "model/app_model.h"
#include "model/texts/system_words.h"

#include <algorithm>
#include <iterator>

namespace hopsel {

namespace {

/// ISO 8601 to the second with a numeric offset, also for UTC: Qt itself would write "Z" there.
std::string iso8601(const QDateTime& time) {
    const int minutes = time.offsetFromUtc() / 60;
    const auto twoDigits = [](int number) { return QString::number(number).rightJustified(2, '0'); };
    const QString offset = QString(minutes < 0 ? '-' : '+') + twoDigits(std::abs(minutes) / 60) + ':' +
                           twoDigits(std::abs(minutes) % 60);
    return (time.toString("yyyy-MM-ddTHH:mm:ss") + offset).toStdString();
}

} // namespace

void AppModel::setDiagnosticsVisible(bool visible) {
    DiagnosticsRecorder& recorder = *parts_.diagnostics;
    if (visible == recorder.isRecording()) return;
    if (!visible) {
        recorder.stopRecording();
        return;
    }
    recorder.startRecording();
    probeStart_.reset();
    publish(lastSavedReport_, std::nullopt);
    publish(reportCopied_, false);
    publish(detectedApps_,
            process_scanner::detect(parts_.runningApps->runningBundleIDs(), known_apps::all()));
}

std::optional<ModifierKey> AppModel::probeTrigger() const {
    for (const Rule& rule : rules_) {
        const auto key = tappedKey(rule.trigger);
        if (rule.enabled && key) return key;
    }
    return std::nullopt;
}

void AppModel::startProbe() {
    if (!probeTrigger()) return;
    probeStart_ = parts_.environment.uptime();
    diagnosticsFeed_.bump();
}

std::optional<ProbeResult> AppModel::probeResult() const {
    const auto trigger = probeTrigger();
    if (!trigger || !probeStart_) return std::nullopt;
    DiagnosticEntries since;
    std::copy_if(parts_.diagnostics->entries().begin(), parts_.diagnostics->entries().end(),
                 std::back_inserter(since),
                 [this](const DiagnosticEntry& entry) { return entry.time >= *probeStart_; });
    return conflict_analyzer::probe(since, *trigger);
}

std::vector<ConflictWarning> AppModel::diagnosticWarnings() const {
    std::optional<conflict_analyzer::Probe> probe;
    if (const auto result = probeResult()) probe = {*probeTrigger(), *result};
    return conflict_analyzer::warnings(parts_.diagnostics->entries(), probe);
}

std::string AppModel::buildReport() const {
    const DiagnosticsEnvironment& environment = parts_.environment;
    ReportInput input;
    input.generatedAt = iso8601(environment.date().toTimeZone(environment.timeZone));
    input.appVersion = parts_.appVersion;
    input.macOSVersion = environment.macOSVersion;
    input.architecture = environment.architecture;
    input.inputMonitoringGranted = parts_.settings->inputMonitoringGranted();
    input.accessibilityGranted = parts_.settings->accessibilityGranted();
    input.engineState = engineState_;
    input.shortcutStatus = shortcutStatus_;
    for (const Rule& rule : rules_) {
        const auto& toggle = std::get<action::Toggle>(rule.action);
        input.rules.push_back({rule.enabled, rule.trigger, toggle.sourceA.sourceId, toggle.sourceB.sourceId});
    }
    for (const KnownApp& app : detectedApps_) input.detectedApps.emplace_back(app.name);
    input.warnings = diagnosticWarnings();
    input.entries = parts_.diagnostics->entries();
    return report_builder::build(input);
}

void AppModel::saveReport() {
    const DiagnosticsEnvironment& environment = parts_.environment;
    const QString date = environment.date().toTimeZone(environment.timeZone).toString("yyyyMMdd-HHmmss");
    const auto location = parts_.reportDelivery->saveFile(
        bug_report_mail::suggestedFileName(date.toStdString()), buildReport());
    if (location) publish(lastSavedReport_, location);
}

void AppModel::copyReport() {
    parts_.reportDelivery->copyToClipboard(buildReport());
    publish(reportCopied_, true);
}

void AppModel::composeReportMail() {
    copyReport(); // first: the mail asks the user to paste it
    parts_.reportDelivery->openMail(
        bug_report_mail::composeURL(parts_.appVersion, l10n::systemWords().pasteKeys));
}

} // namespace hopsel
