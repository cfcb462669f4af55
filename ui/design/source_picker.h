// A picker of one input source out of those that are offered. It has no empty entry: nothing chosen shows
// blank.
#pragma once

#include "core/platform/input_source.h"

#include <QComboBox>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace hopsel::design {

class SourcePicker final : public QComboBox {
  public:
    explicit SourcePicker(const QString& accessibleName, QWidget* parent = nullptr);

    /// Replaces the entries and the choice; `onPicked` is not called. A choice that is not offered is shown
    /// by `fallbackName` when there is one, without being an entry.
    void show(const std::vector<InputSourceInfo>& offered, const std::optional<std::string>& chosenID,
              const QString& fallbackName = {});

    /// The user chose another entry.
    std::function<void(const std::string& id)> onPicked;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    /// Scrolling the pane must not change a rule.
    void wheelEvent(QWheelEvent* event) override;
};

} // namespace hopsel::design
