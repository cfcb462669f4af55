// Engine scenarios in words: what happens, one word each, and what came of it, as one line of text.
//
// clang-format off
//   rcmd+ rcmd-   a modifier goes down, up; so do a, f5 and space
//   rcmd          a tap of a modifier
//   rcmd~         comes up, but its release is lost
//   space*        a repeat
//   200ms         time passes, and the main loop turns; `turn` alone is the turn without the time
//   secure !secure  sets, takes back a flag of the surroundings; so do the others of `flags_`
//   |             forget the outcomes so far
//   other words   see the tables in scenario.cpp
// clang-format on
//
// The engine is running with the rules of `Scenario::rules()`, A is current. The loop turns once more at the
// end.
#pragma once

#include "support/fakes/engine_rig.h"

#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace hopsel {

class Scenario {
  public:
    Scenario();

    /// The outcomes of the script, joined by ", ". Throws std::invalid_argument at a word that there is not.
    std::string run(std::string_view script);

    /// `cmd`: right Command toggles A and B. `opt`: right Option toggles A and C. `space`: left Shift+Space
    /// toggles A and B. `f5`: F5 alone toggles B and C.
    static Config rules();
    /// Those without a shortcut.
    static Config tapRules();
    /// Other sources for `cmd` and `f5`, between a disabled rule and later rules for the same triggers:
    /// `cmd` toggles C and B, `f5` A and B.
    static Config otherRules();

    fakes::EngineRig rig;

  private:
    void perform(const std::string& word);
    bool performKey(const std::string& word);
    void beginCapture(std::function<void()> andThen = nullptr);
    void collect();
    void add(const std::string& outcome) { outcomes_ += (outcomes_.empty() ? "" : ", ") + outcome; }

    std::string outcomes_;
    const std::map<std::string, bool*> flags_{{"sides", &rig.tellsSides},
                                              {"synthetic", &rig.synthetic},
                                              {"secure", &rig.secureInput->enabled},
                                              {"takes-effect", &rig.service->takesEffect},
                                              {"sends", &rig.guestKeys->works},
                                              {"no-listener", &rig.source->refuses},
                                              {"no-filter", &rig.filter->refuses},
                                              {"no-change", &rig.filter->refusesChange}};
};

} // namespace hopsel
