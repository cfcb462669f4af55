// Which input methods of this user give Latin letters at first: a toggle to them seems to do nothing.
//
// Made by start-up and shared with the catalog of the session. Reads the settings of IBus's engines and of
// Fcitx5's methods at each question; the storage tells of changes on the session bus, files are looked at by
// `check`. Writes one of them only when the user asks for it.
#pragma once

#include "platform/linux/bus/bus_link.h"
#include "platform/linux/sources/source_limits.h"

#include <map>
#include <memory>

namespace hopsel {

class LatinStart final : public SourceLimits {
  public:
    explicit LatinStart(std::shared_ptr<BusLink> sessionBus);

    SourceLimit limitOf(const std::string& id) override;
    /// Engines of IBus whose setting is in the storage, where there is a program that writes to it.
    bool canSetStart(const std::string& id) const override;
    void setStartsInOwnScript(const std::string& id, bool inOwnScript) override;
    void check() override;
    bool needsCheck() const override;

  private:
    std::map<std::string, SourceLimit> told_;
    std::map<std::string, std::string> before_; ///< values that were written over
    BusSubscription changes_;
};

} // namespace hopsel
