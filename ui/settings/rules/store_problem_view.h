// Says why the settings file cannot be used, where it and its copies are, and offers the ways out.
//
// Stands at the top of the panes for as long as there is a problem; owned by their layouts.
#pragma once

#include "model/app_model.h"

#include <QVBoxLayout>
#include <QWidget>

namespace hopsel {

/// Follows the model by itself; takes no room while there is no problem.
class StoreProblemView final : public QWidget {
  public:
    explicit StoreProblemView(AppModel& model, QWidget* parent = nullptr);

  private:
    void refresh();
    QWidget* places(const StoreProblem& problem);
    QWidget* actions(const StoreProblem& problem);
    void tell(const EditResult& result);

    AppModel& model_;
    QVBoxLayout* column_;
    std::optional<StoreProblem> shown_;
    QVBoxLayout* failure_ = nullptr;
};

} // namespace hopsel
