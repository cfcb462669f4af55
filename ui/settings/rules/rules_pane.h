// The Rules pane of the Settings window: the rules, a button that adds one, and the sheet that it opens.
//
// Made by the Settings window while the pane is selected. The sheet lies over the whole window and goes with
// the pane at the latest.
#pragma once

#include "core/platform/local_key_monitoring.h"
#include "model/app_model.h"
#include "ui/design/pane_container.h"

#include <QLineEdit>
#include <QPointer>
#include <QTimer>
#include <memory>
#include <vector>

namespace hopsel {

namespace design {
class Button;
class Card;
class Sheet;
class Text;
} // namespace design
class ExchangeRow;
class RuleRow;
class UndoRow;

class RulesPane final : public design::PaneContainer {
  public:
    RulesPane(AppModel& model, std::shared_ptr<LocalKeyMonitoring> keys, QWidget* parent = nullptr);
    ~RulesPane() override;

    /// What the add button does.
    void showAddSheet() { showSheet(std::nullopt); }
    bool isShowingAddSheet() const { return !sheet_.isNull(); }

  protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

  private:
    /// For a new rule, or to give a rule another key.
    void showSheet(std::optional<Rule> changed);
    void closeAddSheet();
    void fillTaken();
    /// For the first rule whose combination is taken.
    void chooseAnother();
    void refresh();
    void fillNotice();
    void showNotice();
    void lightUp();
    bool showsSameRules() const;
    void rebuildRows();
    /// The rows, then what stands below: new widgets come last by themselves.
    void orderTabs();
    void giveFocusNear(std::size_t index);

    AppModel& model_;
    std::shared_ptr<LocalKeyMonitoring> keys_;
    design::Card* taken_; ///< which combinations another program holds, and two ways out
    design::Text* takenWords_ = nullptr;
    design::Text* empty_;
    design::Card* card_;
    std::vector<RuleRow*> rows_;
    UndoRow* undo_;
    design::Button* add_;
    design::Card* notice_; ///< what became of the settings file, and the way to save again
    design::Text* noticeWords_ = nullptr;
    design::Button* again_ = nullptr;
    ExchangeRow* exchange_;
    QWidget* remoteNote_;
    QLineEdit* try_; ///< a place to press the keys in, and to see what they type
    QPointer<design::Sheet> sheet_;
    std::string changedRule_; ///< whose key the sheet changes; empty for a new one
    int litFiring_;
    QTimer conflicts_; ///< runs while the pane is shown
};

} // namespace hopsel
