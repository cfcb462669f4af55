// The pane with the state in one line, the two preferences, and the way back to the first-run setup.
#pragma once

#include "model/app_model.h"
#include "ui/design/buttons.h"
#include "ui/design/pane_container.h"
#include "ui/design/symbols.h"
#include "ui/design/text.h"

namespace hopsel {

class GeneralPane final : public design::PaneContainer {
  public:
    explicit GeneralPane(AppModel& model, QWidget* parent = nullptr);

  private:
    QWidget* statusCard();
    QWidget* settingsCard();
    QWidget* approvalLine();
    void refresh();

    AppModel& model_;
    design::Dot* dot_ = nullptr;
    design::Text* status_ = nullptr;
    design::Switch* main_ = nullptr;
    design::Button* openPrivacy_ = nullptr;
    design::Switch* showLabel_ = nullptr;
    design::Switch* indicate_ = nullptr;
    design::Switch* guardTaps_ = nullptr; ///< only where it can be done
    design::Switch* launchAtLogin_ = nullptr;
    QWidget* launchRow_ = nullptr;
    QWidget* approval_ = nullptr;
};

} // namespace hopsel
