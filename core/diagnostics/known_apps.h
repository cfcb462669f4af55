// Other programs that remap keys or listen to them, and which of them run. A pure table and a pure search.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace hopsel {

struct KnownApp {
    std::string_view name;                        ///< for people
    std::vector<std::string_view> bundlePrefixes; ///< beginnings of application identifiers
    friend bool operator==(const KnownApp&, const KnownApp&) = default;
};

namespace known_apps {

/// In the order in which they are shown.
const std::vector<KnownApp>& all();

} // namespace known_apps

namespace process_scanner {

/// The known applications of which one of the running identifiers begins with a prefix, whatever the case, in
/// the order of `known`, each once.
std::vector<KnownApp> detect(const std::vector<std::string>& runningBundleIDs,
                             const std::vector<KnownApp>& known);

} // namespace process_scanner
} // namespace hopsel
