// The panes of the Settings window, and which of them is shown.
//
// One navigation per window controller, which owns it; the window and its panes share it.
#pragma once

#include "model/observable_object.h"

#include <QString>
#include <array>

namespace hopsel {

enum class SettingsPane { general, sources, rules, diagnostics, about };

inline constexpr std::array<SettingsPane, 5> allSettingsPanes{SettingsPane::general, SettingsPane::sources,
                                                              SettingsPane::rules, SettingsPane::diagnostics,
                                                              SettingsPane::about};

/// In the language of the process.
QString title(SettingsPane pane);
/// The name of the symbol beside the title.
QString symbol(SettingsPane pane);

class SettingsNavigation final : public ObservableObject {
  public:
    explicit SettingsNavigation(SettingsPane pane) : pane_(pane) {}

    SettingsPane pane() const { return pane_; }
    void setPane(SettingsPane pane) { publish(pane_, pane); }

  private:
    SettingsPane pane_;
};

} // namespace hopsel
