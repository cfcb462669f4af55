// The label of the new input source, for a moment, beside the mouse pointer: for who looks at the text and
// not at the panel.
//
// Owned by the delegate, follows the model. Off by default; while it is off, or nothing switches, there is no
// window. The window takes no focus and no input: clicks go to what is beneath it.
#pragma once

#include "model/app_model.h"

#include <QTimer>
#include <QWidget>
#include <memory>

namespace hopsel {

class SwitchIndicator final : public QObject {
  public:
    explicit SwitchIndicator(AppModel& model);
    ~SwitchIndicator() override;

    /// What is shown now; none between switches.
    const QWidget* window() const { return window_.get(); }

  private:
    void look();
    void show(const QString& label);

    AppModel& model_;
    int shownFiring_;
    std::unique_ptr<QWidget> window_;
    QTimer end_;
};

} // namespace hopsel
