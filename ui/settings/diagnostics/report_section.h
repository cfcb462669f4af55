// The report: to look at before it leaves the program, and the ways out.
#pragma once

#include "model/app_model.h"
#include "ui/design/boxes.h"
#include "ui/design/disclosure.h"
#include "ui/design/reading_text.h"

namespace hopsel {

class ReportSection final : public QWidget {
  public:
    explicit ReportSection(AppModel& model, QWidget* parent = nullptr);

    void refresh();

  private:
    QWidget* ways();

    AppModel& model_;
    design::Disclosure* title_;
    design::Card* card_;
    design::ReadingText* report_; ///< its text is built only while it can be seen
    design::ReadingText* savedTo_;
    design::Text* copied_;
};

} // namespace hopsel
