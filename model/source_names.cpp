#include "model/source_names.h"

#include <map>

namespace hopsel::source_names {

namespace {

/// Without who it comes from: "us+dvorak" of "xkb:us+dvorak".
std::string ownPart(const std::string& id) {
    const auto colon = id.find(':');
    return colon == std::string::npos ? id : id.substr(colon + 1);
}

} // namespace

std::vector<InputSourceInfo> toldApart(std::vector<InputSourceInfo> sources) {
    std::map<std::string, int> bearers;
    for (const InputSourceInfo& source : sources) ++bearers[source.name];
    for (InputSourceInfo& source : sources)
        if (bearers[source.name] > 1) source.name += " [" + ownPart(source.id) + "]";
    return sources;
}

} // namespace hopsel::source_names
