// Keeps the most recent key kinds and engine decisions in memory, only while someone wants to see them.
//
// One instance per process, shared: the engine writes, the application starts, stops and reads.
// Nothing recorded can hold what was typed: a key entry has the kind of the key event, the held modifiers and
// the verdict, and no field for the code of an ordinary key. Nothing is ever written to disk from here.
#pragma once

#include "core/events/engine_event.h"
#include "core/keys/key_event.h"
#include "core/keys/key_state_machine.h"

#include <deque>
#include <functional>
#include <variant>

namespace hopsel {

namespace diagnostic_kind {
struct Key {
    KeyEventKind kind;
    ModifierSet held;
    KeyVerdict verdict;
    friend bool operator==(const Key&, const Key&) = default;
};
struct Engine {
    EngineEvent event;
    friend bool operator==(const Engine&, const Engine&) = default;
};
} // namespace diagnostic_kind

using DiagnosticKind = std::variant<diagnostic_kind::Key, diagnostic_kind::Engine>;

struct DiagnosticEntry {
    double time = 0; ///< seconds on the engine's clock; only differences mean anything
    DiagnosticKind kind;
    friend bool operator==(const DiagnosticEntry&, const DiagnosticEntry&) = default;
};

/// Oldest first.
using DiagnosticEntries = std::deque<DiagnosticEntry>;

class DiagnosticsRecorder {
  public:
    static constexpr std::size_t capacity = 200;

    const DiagnosticEntries& entries() const { return entries_; }
    bool isRecording() const { return isRecording_; }

    /// Throws the old entries away, then `onChange`.
    void startRecording();
    /// Keeps the entries, so that a report can still be built from them. No `onChange`.
    void stopRecording() { isRecording_ = false; }
    /// Goes on recording if it was; `onChange`.
    void clear();
    /// Does nothing while not recording; drops the oldest entries beyond the capacity; `onChange`.
    void record(DiagnosticKind kind, double time);

    /// Called synchronously, also while the platform waits for the answer to a key: it must be quick and must
    /// not call the engine. It may replace itself.
    std::function<void()> onChange;

  private:
    void changed() const;

    DiagnosticEntries entries_;
    bool isRecording_ = false;
};

} // namespace hopsel
