// The pane that lists the enabled input sources, as the platform orders them.
#pragma once

#include "model/app_model.h"
#include "ui/design/pane_container.h"
#include "ui/settings/source_row.h"

#include <optional>
#include <vector>

namespace hopsel {

class SourcesPane final : public design::PaneContainer {
  public:
    explicit SourcesPane(AppModel& model, QWidget* parent = nullptr);

  private:
    void refresh();
    void rebuild();

    AppModel& model_;
    std::optional<std::vector<InputSourceInfo>> shown_;
    std::vector<SourceRow*> rows_; ///< one for each that is shown
};

} // namespace hopsel
