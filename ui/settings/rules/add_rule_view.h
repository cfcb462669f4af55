// The contents of the sheet that adds a rule: press the trigger, choose the two input sources, see at once
// what speaks against it.
//
// Made by the Rules pane while its sheet is shown, or alone for a picture. When it is hidden or goes, a
// capture that is under way ends. Escape cancels, Return adds.
#pragma once

#include "ui/settings/rules/trigger_capture.h"

#include <QVBoxLayout>
#include <QWidget>

namespace hopsel {

namespace design {
class Button;
class SourcePicker;
class Text;
} // namespace design

class AddRuleView final : public QWidget {
  public:
    /// `onClose` is called from within a control of the view: delete it later. `changed`: the rule that is
    /// given another key, instead of a new one.
    AddRuleView(AppModel& model, std::shared_ptr<LocalKeyMonitoring> keys,
                std::optional<Trigger> initialTrigger, std::function<void()> onClose,
                QWidget* parent = nullptr, std::optional<Rule> changed = std::nullopt);

    /// To where the user begins.
    void focusFirst();
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return {}; }

  protected:
    void hideEvent(QHideEvent* event) override;

  private:
    QString title() const;
    QWidget* body();
    QWidget* pickerColumn(const QString& title, design::SourcePicker*& picker,
                          std::optional<std::string>& chosenID);
    QWidget* buttonRow();
    void bindKeys();

    void refresh();
    void showCapture();
    void showSources(const std::vector<InputSourceInfo>& offered);
    void showMessages();

    std::optional<InputSourceInfo> selected(const std::optional<std::string>& id) const;
    std::vector<RuleIssue> issues() const;
    QString describe(const RuleIssue& issue) const;
    QStringList warnings() const;
    EditResult store();
    bool canAdd() const;
    void add();
    void cancel();

    AppModel& model_;
    std::optional<Rule> changed_;
    TriggerCapture capture_;
    std::optional<std::string> sourceAID_;
    std::optional<std::string> sourceBID_;
    QString failure_; ///< why the latest try to add could not be stored
    std::function<void()> onClose_;

    QWidget* body_ = nullptr;    ///< scrolls when there is no room
    QWidget* buttons_ = nullptr; ///< always in sight
    design::Button* captureButton_;
    design::Text* hint_;
    design::Button* turnOn_; ///< the way out where the main switch is what keeps the capture from starting
    design::SourcePicker* pickerA_ = nullptr;
    design::SourcePicker* pickerB_ = nullptr;
    QVBoxLayout* messages_;
    design::Button* cancelButton_ = nullptr;
    design::Button* addButton_ = nullptr;
    std::optional<std::vector<InputSourceInfo>> shownSources_;
    QStringList shownMessages_;
};

} // namespace hopsel
