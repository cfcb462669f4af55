#include "platform/linux/desktops/remembered_framework.h"

#include <utility>

namespace hopsel {

void RememberedFramework::accept(const std::string& id) {
    refusal_.reset();
    requestedID_ = id;
    hasBeenCurrent_ = false;
}

void RememberedFramework::remember(State next) {
    const State before = std::exchange(state_, std::move(next));
    if (requestedID_ && state_.currentID == requestedID_) hasBeenCurrent_ = true;
    // Read before anybody is told, who may bring about the next change.
    const bool areSourcesOther = before.sources != state_.sources;
    const bool isSelectedOther = before.currentID != state_.currentID;
    if (before.isInCharge != state_.isInCharge) {
        if (onInChargeChanged) onInChargeChanged();
        return; // whoever takes over or is left alone asks for everything
    }
    if (areSourcesOther && onSourcesChanged) onSourcesChanged();
    if (isSelectedOther && onSelectedChanged) onSelectedChanged();
}

void RememberedFramework::forget(SelectResult reason) {
    refusal_ = reason;
    requestedID_.reset();
    remember({});
}

} // namespace hopsel
