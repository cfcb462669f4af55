// What the pictures show: sample input sources and rules, and models in the states of the screens.
//
// Nothing of the user's is read or written: each model has a settings file of its own, in memory.
#pragma once

#include "core/diagnostics/diagnostics_recorder.h"
#include "model/app_model.h"
#include "ui/preview/preview_parts.h"

#include <filesystem>
#include <memory>
#include <vector>

namespace hopsel {

class PreviewModel {
  public:
    struct Setup {
        std::vector<Rule> rules;
        EngineState state = engine_state::Running{};
        ShortcutStatus shortcutStatus = ShortcutStatus::running;
        bool inputMonitoring = true;
        bool accessibility = true;
    };

    explicit PreviewModel(const Setup& setup);

    AppModel& app() { return *model_; }
    /// Plays an event of the engine to recorder and model.
    void play(double time, const EngineEvent& event);
    void record(double time, KeyEventKind kind, ModifierSet held, KeyVerdict verdict);
    void setUptime(double seconds) { *uptime_ = seconds; }

  private:
    std::shared_ptr<double> uptime_ = std::make_shared<double>(0);
    std::shared_ptr<PreviewEngine> engine_;
    std::shared_ptr<DiagnosticsRecorder> recorder_ = std::make_shared<DiagnosticsRecorder>();
    std::unique_ptr<AppModel> model_;
};

namespace preview_data {

/// As macOS lists them, one of them not selectable, in the language of the process.
std::vector<InputSourceInfo> sources();

Rule rightCommandRule();
Rule rightOptionRule();
Rule shiftSpaceRule();

/// All well, with two modifier-tap rules.
PreviewModel::Setup usual();

/// A recording of a minute's use, with a remapped key and failed switches in it.
void playDiagnostics(PreviewModel& model);

} // namespace preview_data
} // namespace hopsel
