// Selects an input source and waits until the platform reports it as current; and the service made of that.
//
// Platform-free: the catalog, the clock and the function that runs the event loop are given. The platform is
// asked every 5 ms at the latest, and sooner when an event arrives: the loop function returns early then, so
// a switch is verified as soon as the platform tells; also if another program took it back in that same
// moment. Main thread only; another thread stops the process.
#pragma once

#include "core/platform/input_source_service.h"

#include <functional>
#include <memory>
#include <thread>

namespace hopsel {

class InputSourceSwitcher {
  public:
    /// Seconds of system uptime.
    using Clock = std::function<double()>;
    /// Runs the event loop once, for at most `seconds`.
    using RunLoop = std::function<void(double seconds)>;

    static constexpr double pumpStep = 0.005;

    /// `catalog` must outlive the switcher. The thread that constructs it is the main thread.
    InputSourceSwitcher(InputSourceCatalog& catalog, Clock clock, RunLoop runLoop);

    /// `via`: a source to pass through first, whose outcome is not reported. `verifyTimeout` in seconds.
    SwitchOutcome switchTo(const std::string& id, const std::optional<std::string>& via,
                           double verifyTimeout);

  private:
    SelectResult selectAndWait(const std::string& id, double timeout, bool& verified);

    InputSourceCatalog& catalog_;
    Clock clock_;
    RunLoop runLoop_;
    std::thread::id mainThread_;
};

/// The live service: the platform's catalog, switched with half a second to verify.
class LiveInputSourceService final : public InputSourceService {
  public:
    static constexpr double verifyTimeout = 0.5;
    /// Which source a switch to this one is to pass through first; none for the straight way.
    using Detour = std::function<std::optional<std::string>(const std::string& id)>;

    LiveInputSourceService(std::shared_ptr<InputSourceCatalog> catalog, InputSourceSwitcher::Clock clock,
                           InputSourceSwitcher::RunLoop runLoop, Detour detour = nullptr);

    std::set<std::string> availableSourceIDs() override;
    SwitchOutcome switchTo(const std::string& id) override;
    std::optional<std::string> currentID() override;
    bool hasBeenCurrent() const override { return catalog_->hasBeenCurrent(); }

  private:
    std::shared_ptr<InputSourceCatalog> catalog_;
    InputSourceSwitcher switcher_;
    Detour detour_;
};

} // namespace hopsel
