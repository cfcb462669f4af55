// The buttons that write the rules to a file and take in those of another, and what came of it.
//
// Owned by the Rules pane. The desktop's own dialog asks for the file; nothing waits for it.
#pragma once

#include "model/app_model.h"
#include "ui/design/colors.h"

#include <QVBoxLayout>
#include <QWidget>

namespace hopsel {

namespace design {
class Button;
}

class ExchangeRow final : public QWidget {
  public:
    /// `first` stands before the two buttons.
    ExchangeRow(AppModel& model, QWidget* first, QWidget* parent = nullptr);

    /// Exporting needs rules, importing a settings file that can be written.
    void refresh();
    QWidget* firstButton() const;
    QWidget* lastButton() const;

  private:
    void askForFile(bool isExport);
    void exportTo(const QString& file);
    void importFrom(const QString& file);
    void tell(const QString& words, design::Tone tone);

    AppModel& model_;
    design::Button* import_;
    design::Button* export_;
    QVBoxLayout* said_;
};

} // namespace hopsel
