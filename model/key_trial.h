// Follows what comes of the keys that someone presses to try a trigger, and says in words what went wrong.
//
// Made by the introduction for its last page and gone with it. While it lives the engine tells it of keys, as
// it tells diagnostics: kinds of keys and verdicts, never what was typed. Nothing of it is kept but the last
// remark. The application model outlives it.
#pragma once

#include "core/diagnostics/diagnostics_recorder.h"
#include "core/keys/key_state_machine.h"
#include "model/app_model.h"
#include "model/observable_object.h"

#include <memory>
#include <string>

namespace hopsel {

class KeyTrial final : public ObservableObject {
  public:
    KeyTrial(AppModel& app, const Trigger& trigger);
    ~KeyTrial() override;

    /// About the last press, if it did not switch; else empty.
    const std::string& remark() const { return remark_; }
    /// A key that the engine does not name was pressed in our window: this one.
    void noteOtherKey(const std::string& name);

  private:
    void take(const DiagnosticEntry& entry);
    void takeKey(const diagnostic_kind::Key& key, double time);
    void takeEvent(const EngineEvent& event);
    std::string refusal(const SelectResult& result) const;

    AppModel& app_;
    Trigger trigger_;
    /// For taps of any modifier.
    KeyStateMachine machine_;
    std::shared_ptr<DiagnosticsRecorder> listener_ = std::make_shared<DiagnosticsRecorder>();
    std::string remark_;
};

} // namespace hopsel
