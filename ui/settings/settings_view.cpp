#include "ui/settings/settings_view.h"

#include "core/base/product.h"
#include "ui/design/boxes.h"
#include "ui/design/sidebar_row.h"
#include "ui/settings/about_pane.h"
#include "ui/settings/diagnostics/diagnostics_pane.h"
#include "ui/settings/general_pane.h"
#include "ui/settings/rules/rules_pane.h"
#include "ui/settings/sources_pane.h"

namespace hopsel {

SettingsView::SettingsView(AppModel& model, SettingsNavigation& navigation,
                           std::shared_ptr<LocalKeyMonitoring> keys, QWidget* parent)
    : QWidget(parent),
      model_(model),
      navigation_(navigation),
      keys_(std::move(keys)),
      row_(new QHBoxLayout(this)) {
    row_->setContentsMargins(0, 0, 0, 0);
    row_->setSpacing(0);
    row_->addWidget(sidebar());
    row_->addWidget(new design::Divider(Qt::Vertical));
    showPane();
    navigation.observe(this, [this] { showPane(); });
}

QWidget* SettingsView::sidebar() {
    auto* ground = new design::Sidebar;
    for (const SettingsPane pane : allSettingsPanes) {
        auto* row = new design::SidebarRow(design::SidebarRow::Kind::tab, symbol(pane), title(pane));
        connect(row, &QAbstractButton::clicked, this, [this, pane] { navigation_.setPane(pane); });
        ground->column()->addWidget(row);
        rows_.emplace(pane, row);
    }
    ground->column()->addStretch(1);
    const std::string_view name = product::name;
    menuRow_ = new design::SidebarRow(design::SidebarRow::Kind::command, "keyboard",
                                      QString::fromUtf8(name.data(), qsizetype(name.size())));
    menuRow_->hide();
    connect(menuRow_, &QAbstractButton::clicked, this, [this] {
        if (menu_) menu_->popup(menuRow_->mapToGlobal(QPoint(0, -menu_->sizeHint().height())));
    });
    ground->column()->addWidget(menuRow_);
    return ground;
}

void SettingsView::setMenu(QMenu* menu) {
    menu_ = menu;
    menuRow_->setVisible(menu != nullptr);
}

QWidget* SettingsView::makePane(SettingsPane pane) {
    switch (pane) {
    case SettingsPane::general: return new GeneralPane(model_);
    case SettingsPane::sources: return new SourcesPane(model_);
    case SettingsPane::rules: return new RulesPane(model_, keys_);
    case SettingsPane::diagnostics: return new DiagnosticsPane(model_);
    case SettingsPane::about: return new AboutPane(model_);
    }
    return nullptr;
}

void SettingsView::showPane() {
    const SettingsPane wanted = navigation_.pane();
    design::SidebarRow* selected = rows_.at(wanted);
    selected->setChecked(true);
    // Tab comes to the row that is selected; the arrow keys go on from there.
    for (const auto& [pane, row] : rows_) {
        if (row == window()->focusWidget()) selected->setFocus();
        row->setFocusPolicy(row == selected ? Qt::StrongFocus : Qt::ClickFocus);
    }
    if (shown_ == wanted) return;
    shown_ = wanted;
    if (pane_) {
        pane_->hide(); // it must learn that it disappears
        pane_->deleteLater();
    }
    pane_ = makePane(wanted);
    row_->addWidget(pane_, 1);
    pane_->show();
}

} // namespace hopsel
