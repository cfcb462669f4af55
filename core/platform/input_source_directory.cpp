#include "core/platform/input_source_directory.h"

namespace hopsel {

LiveInputSourceDirectory::LiveInputSourceDirectory(std::shared_ptr<InputSourceCatalog> catalog)
    : catalog_(std::move(catalog)) {}

LiveInputSourceDirectory::~LiveInputSourceDirectory() {
    if (observation_) catalog_->onSelectedChanged = nullptr;
}

void LiveInputSourceDirectory::startObserving() {
    if (observation_) return;
    observation_ = std::make_shared<LiveInputSourceDirectory*>(this);
    catalog_->onSelectedChanged = [observation = std::weak_ptr(observation_)] {
        const auto alive = observation.lock();
        if (alive && (*alive)->onSelectedChanged) (*alive)->onSelectedChanged();
    };
}

} // namespace hopsel
