// Whether events are recorded, how many there are, and the button that throws them away.
#pragma once

#include "model/app_model.h"
#include "ui/design/symbols.h"
#include "ui/design/text.h"

namespace hopsel {

class RecordingRow final : public QWidget {
  public:
    explicit RecordingRow(AppModel& model, QWidget* parent = nullptr);

    void refresh();

  private:
    AppModel& model_;
    design::Dot* dot_;
    design::Text* count_;
};

} // namespace hopsel
