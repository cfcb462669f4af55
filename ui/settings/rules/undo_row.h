// One line under the rules after one of them was deleted: which, and the button that brings it back.
//
// Owned by the Rules pane. Also undone by the desktop's usual keys, while the pane is shown.
#pragma once

#include "model/app_model.h"

#include <QWidget>

namespace hopsel {

namespace design {
class Button;
class Text;
} // namespace design

class UndoRow final : public QWidget {
  public:
    explicit UndoRow(AppModel& model, QWidget* parent = nullptr);

    /// Takes no room while there is nothing to undo.
    void refresh();
    QWidget* button() const;

  private:
    void undo();

    AppModel& model_;
    design::Text* words_;
    design::Button* button_;
};

} // namespace hopsel
