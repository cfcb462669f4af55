// One rule in the list: a switch, its trigger, its two input sources, what is wrong with it, and a button
// that deletes it.
//
// Made and owned by the Rules pane, one for each rule, for as long as the rule has the same trigger.
#pragma once

#include "model/app_model.h"
#include "ui/design/colors.h"
#include "ui/settings/rules/rule_row_layout.h"

#include <QTimer>
#include <QWidget>
#include <array>
#include <functional>
#include <optional>
#include <tuple>

namespace hopsel {

namespace design {
class Button;
class SourcePicker;
class Switch;
} // namespace design

class RuleRow final : public QWidget {
  public:
    RuleRow(AppModel& model, Rule rule, QWidget* parent = nullptr);

    const Rule& rule() const { return rule_; }
    /// The same rule as it is stored now. Reads the model too; touches only what changed.
    void refresh(const Rule& rule);

    /// How wide the trigger wants to be, and the column that all rows of a list give to theirs.
    int triggerWidth() const;
    void setTriggerColumn(int width);
    /// The last of its controls.
    QWidget* deleteButton() const;
    /// The user wants another key for the rule.
    std::function<void()> onChangeKey;
    QWidget* keyButton() const;
    /// For a moment, in the colour of success or of a warning.
    void lightUp(bool worked);

    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    std::optional<StartOffer> startOffer() const;
    /// In the order of reading, also those that are hidden.
    std::array<QWidget*, 6> notes() const;
    /// What a picker shows.
    using Shown = std::tuple<std::vector<InputSourceInfo>, InputSourceRef>;

    void bind();
    void enable(bool on);
    void pick(const std::string& id, bool isFirst);
    void showSource(design::SourcePicker& picker, const InputSourceRef& current, std::optional<Shown>& shown);
    void showNotes();
    rule_row_layout::Places places(int width) const;
    void arrange();

    AppModel& model_;
    Rule rule_;
    design::Switch* toggle_;
    design::Button* trigger_; ///< looks like the key, and asks for another one
    design::SourcePicker* pickerA_;
    design::SourcePicker* pickerB_;
    QWidget* broken_;
    QWidget* needsAccessibility_;
    QWidget* tapUnheard_;
    QWidget* systemConflict_;
    QWidget* limit_;        ///< what should be known of the sources
    design::Button* start_; ///< and what can be done about it, and back
    design::Button* delete_;
    int triggerColumn_ = 0;
    QTimer light_; ///< runs while the row is lit
    design::Tone lightTone_;
    std::optional<Shown> shownA_;
    std::optional<Shown> shownB_;
};

} // namespace hopsel
