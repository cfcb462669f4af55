// The seams of input-source handling: the engine's service, and the catalog that platforms implement.
//
// A platform writes an `InputSourceCatalog`; the service the engine talks to is the catalog with a switcher
// around it (input_source_switcher.h).
#pragma once

#include "core/platform/input_source.h"
#include "core/platform/switch_hindrance.h"

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace hopsel {

/// The platform's enabled keyboard input sources. Nothing here throws.
class InputSourceCatalog {
  public:
    InputSourceCatalog() = default;
    InputSourceCatalog(const InputSourceCatalog&) = delete;
    InputSourceCatalog& operator=(const InputSourceCatalog&) = delete;
    virtual ~InputSourceCatalog() = default;

    /// In the platform's order; also those that cannot be selected.
    virtual std::vector<InputSourceInfo> enabledKeyboardSources() = 0;
    /// The platform has not told its sources yet: those listed may give way to others in a moment. Its end is
    /// told as a change of the sources.
    virtual bool isAsking() const { return false; }
    /// Absent when the platform reports none.
    virtual std::optional<std::string> currentID() = 0;
    /// Asks the platform to make the source current; does not wait until it is.
    virtual SelectResult select(const std::string& id) = 0;
    /// What the platform has said against the last accepted request since then: a refusal, or that the
    /// framework is gone. Ends the wait for it. Absent where `select` tells everything at once.
    virtual std::optional<SelectResult> refusal() const { return std::nullopt; }
    /// What a code of `Failed` means to a person.
    virtual SwitchHindrance hindrance(std::int32_t /*code*/) const { return SwitchHindrance::unknown; }
    /// The source of the last accepted request has been current at some moment since, though another program
    /// may have made another current by now. False where the platform tells nothing unless asked.
    virtual bool hasBeenCurrent() const { return false; }

    /// Whether an input method that begins in Latin letters can be set from here to begin in its own script.
    virtual bool canSetStart(const std::string& /*id*/) const { return false; }
    /// Changes the user's own settings of that input method, or puts back what was there before. Whether it
    /// worked shows in the list of sources, later.
    virtual void setStartsInOwnScript(const std::string& /*id*/, bool /*inOwnScript*/) {}

    // Called from the event loop, once for a burst of changes; also for changes that this program made.

    /// The set of enabled sources changed.
    std::function<void()> onSourcesChanged;
    /// Another source is current.
    std::function<void()> onSelectedChanged;
};

/// What the engine needs. Nothing here throws: a failure is an outcome, an absent value or an empty set.
class InputSourceService {
  public:
    InputSourceService() = default;
    InputSourceService(const InputSourceService&) = delete;
    InputSourceService& operator=(const InputSourceService&) = delete;
    virtual ~InputSourceService() = default;

    /// Identifiers of the enabled keyboard sources that can be selected.
    virtual std::set<std::string> availableSourceIDs() = 0;
    /// Selects and verifies; may run the event loop meanwhile.
    virtual SwitchOutcome switchTo(const std::string& id) = 0;
    /// Absent when the platform reports none.
    virtual std::optional<std::string> currentID() = 0;
    /// The source of the last accepted switch has been current since, also after the wait for it was over:
    /// what `currentID` says now is newer than that switch.
    virtual bool hasBeenCurrent() const { return false; }
};

} // namespace hopsel
