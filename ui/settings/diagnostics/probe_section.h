// The check of one key: the user presses the switch key once, and sees what arrived.
#pragma once

#include "model/app_model.h"
#include "ui/design/buttons.h"
#include "ui/design/text.h"

namespace hopsel {

class ProbeSection final : public QWidget {
  public:
    explicit ProbeSection(AppModel& model, QWidget* parent = nullptr);

    void refresh();

  private:
    AppModel& model_;
    design::Text* noRule_;
    QWidget* row_;
    design::Button* start_;
    design::Text* result_;
    design::Text* hint_;
};

} // namespace hopsel
