#include "model/menu/status_item_presenter.h"

namespace hopsel::status_item_presenter {

StatusItemAppearance appearance(StatusLine status, bool showLabel, const std::optional<std::string>& label,
                                const std::optional<StatusBadge>& pair) {
    switch (status) {
    case StatusLine::ok:
        if (!showLabel || !label || label->empty()) return {"keyboard", std::nullopt};
        return {"keyboard", pair ? *pair : StatusBadge::single(*label)};
    case StatusLine::noRules:
    case StatusLine::starting: return {"keyboard", std::nullopt};
    case StatusLine::paused: return {"pause.circle", std::nullopt};
    default: return {"exclamationmark.triangle", std::nullopt};
    }
}

} // namespace hopsel::status_item_presenter
