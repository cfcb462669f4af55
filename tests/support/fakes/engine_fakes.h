// Recording fakes of the platform's seams, and virtual time: what the engine needs, without a platform.
//
// Every test, fuzz target and benchmark of the engine uses these. Fields are public; a test sets how the fake
// behaves and reads what was asked of it. Each fake lives as long as the test that made it.
#pragma once

#include "core/platform/event_source.h"
#include "core/platform/guest_key.h"
#include "core/platform/input_source_service.h"
#include "core/platform/log.h"
#include "core/platform/secure_input.h"
#include "core/platform/shortcut_source.h"
#include "core/platform/tap_failure.h"

#include <algorithm>
#include <deque>
#include <string>
#include <utility>
#include <vector>

namespace hopsel::fakes {

/// Seconds; starts at a value at which steps of milliseconds stay exact enough to test limits.
struct VirtualTime {
    double now = 64;
    void advance(double seconds) { now += seconds; }
};

/// Keeps what it is given until `runAll`, the main loop's next turn.
struct ManualScheduler {
    std::deque<std::function<void()>> tasks;

    void runAll() {
        while (!tasks.empty()) {
            const std::function<void()> task = std::move(tasks.front());
            tasks.pop_front();
            task();
        }
    }
};

template <typename Source>
class FakeTap : public Source {
  public:
    void start() override {
        ++starts;
        if (isStarted) return;
        if (refuses) throw TapFailure(TapFailure::Kind::creationFailed, "refused");
        isStarted = true;
    }
    void stop() override { isStarted = false; }

    bool refuses = false;
    bool isStarted = false;
    int starts = 0; ///< calls, also those that were refused or had nothing to do
};

class FakeEventSource final : public FakeTap<EventSource> {
  public:
    void setTapTriggers(ModifierSet keys) override { tapTriggers = keys; }

    ModifierSet tapTriggers;
};

class FakeShortcutSource final : public FakeTap<ShortcutSource> {
  public:
    void setShortcuts(const ShortcutSet& set) override {
        shortcuts = set;
        if (isStarted && refusesChange) onDisabled(false);
    }

    void setStandsAside(bool aside) override { standsAside = aside; }
    ShortcutSet unavailableShortcuts() const override { return taken; }

    bool standsAside = false;
    ShortcutSet taken;          ///< another program has them
    bool refusesChange = false; ///< a running source cannot take another set
    ShortcutSet shortcuts;
};

/// Switches at once unless told otherwise.
class FakeInputSourceService final : public InputSourceService {
  public:
    std::set<std::string> availableSourceIDs() override { return available; }
    std::optional<std::string> currentID() override { return current; }
    SwitchOutcome switchTo(const std::string& id) override {
        switches.push_back(id);
        hasCaughtUp = false;
        if (duringSwitch) duringSwitch();
        const bool selected = std::holds_alternative<select_result::Selected>(result);
        if (selected && takesEffect) current = id;
        return {id, result, selected && takesEffect, 1.5};
    }

    bool hasBeenCurrent() const override { return hasCaughtUp; }

    std::set<std::string> available{"A", "B", "C"};
    std::optional<std::string> current = "A";
    bool hasCaughtUp = false; ///< the source of the last switch was current after the wait for it
    SelectResult result = select_result::Selected{};
    bool takesEffect = true;
    std::function<void()> duringSwitch; ///< what happens while the switch is verified
    std::vector<std::string> switches;
};

/// A platform that reports a selected source as current after `lag` looks at it.
class FakeCatalog final : public InputSourceCatalog {
  public:
    std::vector<InputSourceInfo> enabledKeyboardSources() override { return sources; }
    std::optional<std::string> currentID() override {
        if (wanted_ && looks_++ >= lag) current = std::exchange(wanted_, std::nullopt);
        return current;
    }
    SelectResult select(const std::string& id) override {
        const bool isListed = std::any_of(sources.begin(), sources.end(),
                                          [&](const InputSourceInfo& source) { return source.id == id; });
        if (!isListed) return select_result::NotFound{};
        if (status != 0) return select_result::Failed{status};
        wanted_ = id;
        looks_ = 0;
        return select_result::Selected{};
    }

    std::vector<InputSourceInfo> sources;
    std::optional<std::string> current;
    int lag = 0;
    std::int32_t status = 0;

  private:
    std::optional<std::string> wanted_;
    int looks_ = 0;
};

class FakeSecureInput final : public SecureInputProviding {
  public:
    bool isEnabled() const override { return enabled; }
    SecureInputState state() const override { return told; }

    bool enabled = false;
    SecureInputState told = SecureInputState::watching;
};

class FakeGuestKeySender final : public GuestKeySending {
  public:
    bool send(const ShortcutKey& key) override {
        if (works) sent.push_back(key);
        return works;
    }

    bool works = true;
    std::vector<ShortcutKey> sent;
};

class RecordingLog final : public Log {
  public:
    void write(Level level, std::string_view category, std::string_view message) override {
        const std::string prefix = level == Level::error ? "error " : "info ";
        lines.push_back(prefix + std::string(category) + ": " + std::string(message));
    }

    std::vector<std::string> lines;
};

} // namespace hopsel::fakes
