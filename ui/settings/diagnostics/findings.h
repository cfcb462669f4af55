// What stands out: warnings that the recording gives reason for, other programs that deal with keys, and
// whether password fields go unrecognised.
#pragma once

#include "model/app_model.h"
#include "ui/design/text.h"

#include <QVBoxLayout>
#include <vector>

namespace hopsel {

class Findings final : public QWidget {
  public:
    explicit Findings(AppModel& model, QWidget* parent = nullptr);

    void refresh();

  private:
    void showWarnings();
    void showSecureInput();
    QWidget* appsSection();

    AppModel& model_;
    QWidget* warnings_; ///< not even a heading when there are none
    QVBoxLayout* lines_;
    std::vector<ConflictWarning> shown_;
    design::Text* apps_;
    design::Text* secureInput_; ///< only while password fields go unrecognised
};

} // namespace hopsel
