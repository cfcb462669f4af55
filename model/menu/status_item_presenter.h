// What the status item shows: a symbol, or a badge with labels of input sources. Pure.
#pragma once

#include "model/menu/menu_model.h"

#include <optional>
#include <string>

namespace hopsel {

struct StatusBadge {
    std::string first;                 ///< on the left, or alone
    std::optional<std::string> second; ///< on the right
    bool firstIsCurrent = false;

    static StatusBadge single(std::string label) { return {std::move(label), std::nullopt, true}; }
    friend bool operator==(const StatusBadge&, const StatusBadge&) = default;
};

struct StatusItemAppearance {
    std::string symbolName;           ///< of a symbol image
    std::optional<StatusBadge> badge; ///< shown instead of the symbol
    friend bool operator==(const StatusItemAppearance&, const StatusItemAppearance&) = default;
};

namespace status_item_presenter {

/// A problem, a pause and the start always show as themselves, whatever the labels. `pair`: the badge of the
/// rule that the current source belongs to.
StatusItemAppearance appearance(StatusLine status, bool showLabel, const std::optional<std::string>& label,
                                const std::optional<StatusBadge>& pair);

} // namespace status_item_presenter
} // namespace hopsel
