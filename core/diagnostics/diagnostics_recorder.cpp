#include "core/diagnostics/diagnostics_recorder.h"

namespace hopsel {

void DiagnosticsRecorder::startRecording() {
    entries_.clear();
    isRecording_ = true;
    changed();
}

void DiagnosticsRecorder::clear() {
    entries_.clear();
    changed();
}

void DiagnosticsRecorder::record(DiagnosticKind kind, double time) {
    if (!isRecording_) return;
    entries_.push_back({time, std::move(kind)});
    while (entries_.size() > capacity) entries_.pop_front();
    changed();
}

void DiagnosticsRecorder::changed() const {
    if (const std::function<void()> listener = onChange) listener(); // a copy: it may replace itself
}

} // namespace hopsel
