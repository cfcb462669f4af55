// The pane that says what this is, which version, and that nothing typed is kept.
#pragma once

#include "model/app_model.h"

#include <QScrollArea>

namespace hopsel {

class AboutPane final : public QScrollArea {
  public:
    explicit AboutPane(const AppModel& model, QWidget* parent = nullptr);
};

} // namespace hopsel
