#include "core/platform/input_source_switcher.h"

#include <cstdio>
#include <cstdlib>

namespace hopsel {

InputSourceSwitcher::InputSourceSwitcher(InputSourceCatalog& catalog, Clock clock, RunLoop runLoop)
    : catalog_(catalog),
      clock_(std::move(clock)),
      runLoop_(std::move(runLoop)),
      mainThread_(std::this_thread::get_id()) {}

SwitchOutcome InputSourceSwitcher::switchTo(const std::string& id, const std::optional<std::string>& via,
                                            double verifyTimeout) {
    if (std::this_thread::get_id() != mainThread_) {
        // A programming error: input-source services and the loop belong to the main thread.
        std::fputs("InputSourceSwitcher::switchTo was called outside the main thread\n", stderr);
        std::abort();
    }
    const double start = clock_();
    bool verified = false;
    if (via) selectAndWait(*via, verifyTimeout, verified);
    const SelectResult result = selectAndWait(id, verifyTimeout, verified);
    return {id, result, verified, (clock_() - start) * 1000};
}

// The comparison stands before the first pump: most platforms have switched when `select` returns.
SelectResult InputSourceSwitcher::selectAndWait(const std::string& id, double timeout, bool& verified) {
    verified = false;
    const SelectResult result = catalog_.select(id);
    if (!std::holds_alternative<select_result::Selected>(result)) return result;
    const double start = clock_();
    while (true) {
        verified = catalog_.currentID() == id || catalog_.hasBeenCurrent();
        if (verified) return result;
        if (const std::optional<SelectResult> refusal = catalog_.refusal()) return *refusal;
        if (clock_() >= start + timeout) return result;
        runLoop_(pumpStep);
    }
}

LiveInputSourceService::LiveInputSourceService(std::shared_ptr<InputSourceCatalog> catalog,
                                               InputSourceSwitcher::Clock clock,
                                               InputSourceSwitcher::RunLoop runLoop, Detour detour)
    : catalog_(std::move(catalog)),
      switcher_(*catalog_, std::move(clock), std::move(runLoop)),
      detour_(std::move(detour)) {}

std::set<std::string> LiveInputSourceService::availableSourceIDs() {
    std::set<std::string> ids;
    for (InputSourceInfo& source : catalog_->enabledKeyboardSources()) {
        if (source.isSelectCapable) ids.insert(std::move(source.id));
    }
    return ids;
}

SwitchOutcome LiveInputSourceService::switchTo(const std::string& id) {
    const std::optional<std::string> via = detour_ ? detour_(id) : std::nullopt;
    if (!via || catalog_->currentID() != via) return switcher_.switchTo(id, via, verifyTimeout);
    // Nobody passes through where he stands: there and back, and there again.
    SwitchOutcome there = switcher_.switchTo(id, std::nullopt, verifyTimeout);
    if (!there.verified) return there;
    SwitchOutcome again = switcher_.switchTo(id, via, verifyTimeout);
    again.latencyMs += there.latencyMs;
    return again;
}

std::optional<std::string> LiveInputSourceService::currentID() { return catalog_->currentID(); }

} // namespace hopsel
