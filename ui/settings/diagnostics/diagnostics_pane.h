// The pane where someone who has a problem collects evidence for a bug report.
//
// It records while it is shown: made by the Settings view when it is selected and gone when another pane is.
// The recording can change a thousand times a second; the pane looks again some twenty times at most.
#pragma once

#include "model/app_model.h"
#include "ui/design/pane_container.h"

#include <QTimer>

namespace hopsel {

class EventsSection;
class Findings;
class ProbeSection;
class RecordingRow;
class ReportSection;

class DiagnosticsPane final : public design::PaneContainer {
  public:
    explicit DiagnosticsPane(AppModel& model, QWidget* parent = nullptr);

  protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

  private:
    void refresh();

    AppModel& model_;
    QTimer nextLook_{this};
    RecordingRow* recording_;
    ProbeSection* probe_;
    Findings* findings_;
    EventsSection* events_;
    ReportSection* report_;
};

} // namespace hopsel
