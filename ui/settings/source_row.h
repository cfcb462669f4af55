// One input source in the list: its label, its name and its identifier, and what is special about it.
#pragma once

#include "core/platform/input_source.h"
#include "ui/design/boxes.h"

namespace hopsel {

class SourceRow final : public QWidget {
  public:
    SourceRow(const InputSourceInfo& source, bool isCurrent, QWidget* parent = nullptr);

    /// In place, so that a switch does not take away what the user selects for copying.
    void setCurrent(bool isCurrent) { current_->setVisible(isCurrent); }

  private:
    design::Plate* current_;
};

} // namespace hopsel
