#include "session/hopsel_program.h"

namespace hopsel::session {

const std::string_view twoRules = R"json({
  "rules" : [
    {
      "action" : {
        "sourceA" : { "displayName" : "English (US)",
                       "sourceId" : "xkb:us"
}
, "sourceB" : {"displayName" : "Russian", "sourceId" : "xkb:ru"}, "type" : "toggle_input_source"
}
, "enabled" : true,
              "id" : "5C1E0B1A-4F53-4B8E-9C55-0D0F5C7E2A11",
                     "trigger" : {"key" : "rightCommand", "type" : "modifier_tap"}
},
    {
      "action" : {
        "sourceA" : { "displayName" : "English (US)", "sourceId" : "xkb:us" },
        "sourceB" : { "displayName" : "Russian", "sourceId" : "xkb:ru" },
        "type" : "toggle_input_source"
      },
      "enabled" : true,
      "id" : "A7D3C2F4-18B6-4A0D-8E39-6B1F2D4C9E02",
      "trigger" : { "keyCode" : 49, "modifiers" : [ "leftShift" ], "type" : "shortcut" }
    }
  ],
  "schemaVersion" : 2
}
)json";

HopselProgram::HopselProgram(const std::filesystem::path& executable, std::string_view settings,
                             const std::vector<std::string>& arguments)
    : executable_(std::filesystem::absolute(executable)),
      settingsFile_(folder_.write("config.json", settings)) {
    process_ = startAnother(arguments);
}

std::unique_ptr<ChildProcess> HopselProgram::startAnother(const std::vector<std::string>& arguments) const {
    ChildProcess::Options options;
    options.arguments = arguments;
    if (!arguments.empty()) options.output = ChildProcess::Output::capture;
    options.program = executable_.string();
    options.package = "hopsel itself: build it first";
    const std::string home = folder_.path().string();
    options.environment = {{"HOPSEL_CONFIG", settingsFile_.string()},
                           {"HOME", home},
                           {"XDG_CONFIG_HOME", home},
                           {"XDG_DATA_HOME", home},
                           {"XDG_RUNTIME_DIR", home}};
    options.errors = ChildProcess::Output::capture;
    return std::make_unique<ChildProcess>(options);
}

} // namespace hopsel::session
