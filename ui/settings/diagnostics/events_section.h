// The newest of the recorded events, one line each.
#pragma once

#include "model/app_model.h"
#include "ui/design/boxes.h"
#include "ui/design/reading_text.h"

namespace hopsel {

class EventsSection final : public QWidget {
  public:
    explicit EventsSection(AppModel& model, QWidget* parent = nullptr);

    void refresh();

  private:
    AppModel& model_;
    design::Text* empty_;
    design::Card* card_;
    design::ReadingText* lines_;
};

} // namespace hopsel
