// What is typed while a recording runs is found nowhere: not in the recorder, not in the report, not on disk.
#include "core/diagnostics/diagnostics_recorder.h"
#include "core/diagnostics/report_builder.h"
#include "live_engine.h"
#include "session/temporary_folder.h"

#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <regex>

using namespace hopsel;
using namespace hopsel::test;

namespace {

constexpr std::uint16_t codes[] = {KEY_A, KEY_B, KEY_C, KEY_D, KEY_E, KEY_F, KEY_G, KEY_H, KEY_I,
                                   KEY_J, KEY_K, KEY_L, KEY_M, KEY_N, KEY_O, KEY_P, KEY_Q, KEY_R,
                                   KEY_S, KEY_T, KEY_U, KEY_V, KEY_W, KEY_X, KEY_Y, KEY_Z};

std::string withoutTimes(const std::string& report) {
    return std::regex_replace(report, std::regex("\n *[-+][0-9.]+  "), "\n");
}

class Privacy : public LiveEngine {
  protected:
    Privacy() { engine->setDiagnostics(recorder); }

    /// The report of a recording in which this was typed.
    std::string reportOfTyping(const std::string& sentence) {
        recorder->startRecording();
        window->clear();
        for (const char letter : sentence) keyboard->tap(letter == ' ' ? key::space : codes[letter - 'a']);
        EXPECT_TRUE(window->waitForText(sentence)) << "typed it was";
        EXPECT_TRUE(runLoopUntil([&] { return recorder->entries().size() == 2 * sentence.size(); }));
        ReportInput input;
        input.engineState = engine->state();
        input.entries = recorder->entries();
        return report_builder::build(input);
    }

    std::shared_ptr<DiagnosticsRecorder> recorder = std::make_shared<DiagnosticsRecorder>();
};

TEST_F(Privacy, ARecordingCannotTellOneSentenceFromAnother) {
    const session::TemporaryFolder home;
    for (const char* variable : {"HOME", "TMPDIR", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
        setenv(variable, home.path().c_str(), 1);
    const std::string sentence = "meet me at noon by the old oak";
    const std::string report = reportOfTyping(sentence);
    EXPECT_EQ(withoutTimes(report), withoutTimes(reportOfTyping("quick brown jumps vex lazy dog")));
    EXPECT_EQ(report.find("meet"), std::string::npos);
    EXPECT_EQ(std::filesystem::recursive_directory_iterator(home.path()),
              std::filesystem::recursive_directory_iterator())
        << "nothing was written at all";
}

} // namespace
