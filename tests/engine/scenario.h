// Engine scenarios in words: what happens, one word each, and what came of it, as one line of text.
//
//   rcmd+ rcmd-   a modifier goes down, up; so do a, c, f5, space and caps; space* is a repeat, rcmd~ a lost
//   release 200ms         time passes, and the main loop turns; `turn` alone is the turn without the time |
//   forget the outcomes so far other words   see the table in scenario.cpp
//
// The engine is running with the rules of `Scenario::rules()`, A is current. The loop turns once more at the
// end.
#pragma once

#include "support/fakes/engine_rig.h"

#include <string>
#include <string_view>

namespace hopsel {

class Scenario {
  public:
    Scenario();

    /// The outcomes of the script, joined by ", ".
    std::string run(std::string_view script);

    /// `cmd`: right Command toggles A and B. `opt`: right Option toggles A and C. `space`: left Shift+Space
    /// toggles A and B. `f5`: F5 alone toggles B and C.
    static Config rules();

    fakes::EngineRig rig;

  private:
    void perform(const std::string& word);
    bool performKey(const std::string& word);
    void collect();

    std::string outcomes_;
};

} // namespace hopsel
