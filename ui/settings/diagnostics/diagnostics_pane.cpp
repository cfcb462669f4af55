#include "ui/settings/diagnostics/diagnostics_pane.h"

#include "ui/design/following.h"
#include "ui/design/texts.h"
#include "ui/settings/diagnostics/events_section.h"
#include "ui/settings/diagnostics/findings.h"
#include "ui/settings/diagnostics/probe_section.h"
#include "ui/settings/diagnostics/recording_row.h"
#include "ui/settings/diagnostics/report_section.h"

#include <QGuiApplication>
#include <QHideEvent>
#include <QShowEvent>
#include <chrono>

namespace hopsel {

using l10n::Key;

DiagnosticsPane::DiagnosticsPane(AppModel& model, QWidget* parent)
    : PaneContainer(text(Key::diagTitle), text(Key::diagIntro), parent),
      model_(model),
      recording_(new RecordingRow(model)),
      probe_(new ProbeSection(model)),
      findings_(new Findings(model)),
      events_(new EventsSection(model)),
      report_(new ReportSection(model)) {
    content()->addWidget(recording_);
    content()->addWidget(probe_);
    content()->addWidget(findings_);
    content()->addWidget(events_);
    content()->addWidget(report_);
    follow(this, model, [this] { refresh(); });
    nextLook_.setSingleShot(true);
    nextLook_.setInterval(std::chrono::milliseconds(50));
    nextLook_.callOnTimeout(this, [this] {
        if (!isVisible()) return;
        // A press is recorded as well, and must not move the button away from under the pointer.
        if (QGuiApplication::mouseButtons() != Qt::NoButton)
            nextLook_.start();
        else
            refresh();
    });
    model.diagnosticsFeed().observe(this, [this] {
        if (isVisible() && !nextLook_.isActive()) nextLook_.start();
    });
}

// A minimized window goes on recording: the problem may have to be reproduced behind it.
void DiagnosticsPane::showEvent(QShowEvent* event) {
    PaneContainer::showEvent(event);
    if (!event->spontaneous()) model_.setDiagnosticsVisible(true);
}

void DiagnosticsPane::hideEvent(QHideEvent* event) {
    PaneContainer::hideEvent(event);
    if (!event->spontaneous()) model_.diagnostics().stopRecording();
}

void DiagnosticsPane::refresh() {
    recording_->refresh();
    probe_->refresh();
    findings_->refresh();
    events_->refresh();
    report_->refresh();
}

} // namespace hopsel
