// The seam that lists the input sources for people to look at, and its one implementation over the platform's
// catalog.
//
// Owned by start-up, which sets the callback and starts the observation; shared with the application model.
#pragma once

#include "core/platform/input_source_service.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace hopsel {

class InputSourceDirectory {
  public:
    InputSourceDirectory() = default;
    InputSourceDirectory(const InputSourceDirectory&) = delete;
    InputSourceDirectory& operator=(const InputSourceDirectory&) = delete;
    virtual ~InputSourceDirectory() = default;

    /// In the platform's order; also those that cannot be selected.
    virtual std::vector<InputSourceInfo> enabledSources() = 0;
    /// The platform has not told its sources yet: see the catalog.
    virtual bool isAsking() const { return false; }
    /// What a code of `Failed` means to a person.
    virtual SwitchHindrance hindrance(std::int32_t /*code*/) const { return SwitchHindrance::unknown; }
    // See the catalog.
    virtual bool canSetStart(const std::string& /*id*/) const { return false; }
    virtual void setStartsInOwnScript(const std::string& /*id*/, bool /*inOwnScript*/) {}
    /// Absent when the platform reports none.
    virtual std::optional<std::string> currentID() = 0;
};

class LiveInputSourceDirectory final : public InputSourceDirectory {
  public:
    explicit LiveInputSourceDirectory(std::shared_ptr<InputSourceCatalog> catalog);
    ~LiveInputSourceDirectory() override;

    std::vector<InputSourceInfo> enabledSources() override { return catalog_->enabledKeyboardSources(); }
    bool isAsking() const override { return catalog_->isAsking(); }
    SwitchHindrance hindrance(std::int32_t code) const override { return catalog_->hindrance(code); }
    bool canSetStart(const std::string& id) const override { return catalog_->canSetStart(id); }
    void setStartsInOwnScript(const std::string& id, bool inOwnScript) override {
        catalog_->setStartsInOwnScript(id, inOwnScript);
    }
    std::optional<std::string> currentID() override { return catalog_->currentID(); }

    /// Takes the catalog's `onSelectedChanged` for as long as this object lives. A second call does nothing.
    void startObserving();

    std::function<void()> onSelectedChanged;

  private:
    std::shared_ptr<InputSourceCatalog> catalog_;
    /// Lives as long as the observation is wanted; the catalog's callback holds it weakly.
    std::shared_ptr<LiveInputSourceDirectory*> observation_;
};

} // namespace hopsel
