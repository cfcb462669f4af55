#include "core/diagnostics/known_apps.h"

#include "core/platform/identifier_prefix.h"

#include <algorithm>

namespace hopsel {

const std::vector<KnownApp>& known_apps::all() {
    static const std::vector<KnownApp> table{
        {"Karabiner-Elements", {"org.pqrs.karabiner"}},
        {"BetterTouchTool", {"com.hegenberg.bettertouchtool"}},
        {"Keyboard Maestro", {"com.stairways.keyboardmaestro"}},
        {"Hammerspoon", {"org.hammerspoon.hammerspoon"}},
        {"Logi Options+", {"com.logi.", "com.logitech."}},
        {"SteerMouse", {"jp.plentycom.boa.steermouse"}},
        {"Mac Mouse Fix", {"com.nuebling.mac-mouse-fix"}},
        {"LinearMouse", {"com.lujjjh.linearmouse"}},
        {"Raycast", {"com.raycast.macos"}},
        {"Alfred", {"com.runningwithcrayons.alfred"}},
        {"Rectangle", {"com.knollsoft.rectangle"}},
        {"Parallels", {"com.parallels."}},
        {"VMware Fusion", {"com.vmware.fusion"}},
        {"Windows App / Remote Desktop", {"com.microsoft.rdc"}},

        // Linux: desktop-file names, and the names of programs that have none.
        {"keyd", {"keyd"}},
        {"KMonad", {"kmonad"}},
        {"kanata", {"kanata"}},
        {"xremap", {"xremap"}},
        {"Input Remapper", {"input-remapper", "input-remap"}},
        {"Interception Tools", {"udevmon", "intercept", "interception"}},
        {"evremap", {"evremap"}},
        {"hawck", {"hawck"}},
        {"xkeysnail", {"xkeysnail"}},
        {"Toshy", {"toshy"}},
        {"xcape", {"xcape"}},
        {"ksuperkey", {"ksuperkey"}},
        {"AutoKey", {"autokey"}},
        {"Espanso", {"espanso"}},
        {"xbindkeys", {"xbindkeys"}},
        {"sxhkd", {"sxhkd"}},
        {"swhkd", {"swhkd"}},
        {"Solaar", {"solaar", "io.github.pwr_solaar.solaar"}},
        {"logiops", {"logid"}},
        {"Barrier / Input Leap / Synergy", {"barrier", "input-leap", "synergy", "deskflow"}},
    };
    return table;
}

std::vector<KnownApp> process_scanner::detect(const std::vector<std::string>& runningBundleIDs,
                                              const std::vector<KnownApp>& known) {
    std::vector<KnownApp> found;
    std::copy_if(known.begin(), known.end(), std::back_inserter(found), [&](const KnownApp& app) {
        return std::any_of(
            app.bundlePrefixes.begin(), app.bundlePrefixes.end(), [&](std::string_view prefix) {
                return std::any_of(runningBundleIDs.begin(), runningBundleIDs.end(),
                                   [&](const std::string& id) { return identifierBegins(id, prefix); });
            });
    });
    return found;
}

} // namespace hopsel
