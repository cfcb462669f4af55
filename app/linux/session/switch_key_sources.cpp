#include "app/linux/session/switch_key_sources.h"

#include <array>
#include <cstdlib>
#include <gio/gio.h>
#include <map>
#include <stdexcept>

namespace hopsel {

void DesktopSetting::Unref::operator()(void* object) const { g_object_unref(object); }

void DesktopSetting::open() {
    isOpen_ = true;
    // GSettings ends the process over a schema or key that is not there, so ask first.
    GSettingsSchemaSource* source = g_settings_schema_source_get_default();
    GSettingsSchema* schema =
        source != nullptr ? g_settings_schema_source_lookup(source, schema_, TRUE) : nullptr;
    if (schema == nullptr) return;
    if (g_settings_schema_has_key(schema, key_) != FALSE) {
        GSettingsSchemaKey* key = g_settings_schema_get_key(schema, key_);
        if (g_variant_type_equal(g_settings_schema_key_get_value_type(key), G_VARIANT_TYPE_STRING_ARRAY) !=
            FALSE)
            settings_.reset(g_settings_new_full(schema, nullptr, nullptr));
        g_settings_schema_key_unref(key);
    }
    g_settings_schema_unref(schema);
}

Accelerators DesktopSetting::read() {
    if (!isOpen_) open();
    if (!settings_) return {};
    Accelerators found;
    gchar** texts = g_settings_get_strv(static_cast<GSettings*>(settings_.get()), key_);
    for (gchar** text = texts; *text != nullptr; ++text) found.emplace_back(*text);
    g_strfreev(texts);
    return found;
}

std::filesystem::path FcitxHotkeys::defaultFile() {
    return std::filesystem::path(g_get_user_config_dir()) / "fcitx5" / "config";
}

const Accelerators& FcitxHotkeys::read() {
    std::error_code error;
    const auto changed = std::filesystem::last_write_time(file_, error);
    const auto stamp = error ? std::filesystem::file_time_type::min() : changed;
    if (hasRead_ && stamp == readAt_) return keys_;
    hasRead_ = true;
    readAt_ = stamp;
    // What Fcitx5 does while a group is not written down.
    std::map<std::string, Accelerators> groups{
        {"Hotkey/TriggerKeys", {"Control+space", "Zenkaku_Hankaku", "Hangul"}},
        {"Hotkey/EnumerateForwardKeys", {"Control+Shift_L"}},
        {"Hotkey/EnumerateBackwardKeys", {"Control+Shift_R"}},
        {"Hotkey/EnumerateGroupForwardKeys", {"Super+space"}},
    };
    GKeyFile* file = g_key_file_new();
    if (g_key_file_load_from_file(file, file_.c_str(), G_KEY_FILE_NONE, nullptr) != FALSE) {
        for (auto& [group, keys] : groups) {
            gchar** names = g_key_file_get_keys(file, group.c_str(), nullptr, nullptr);
            if (names == nullptr) continue;
            keys.clear();
            for (gchar** name = names; *name != nullptr; ++name) {
                gchar* value = g_key_file_get_value(file, group.c_str(), *name, nullptr);
                if (value != nullptr) keys.emplace_back(value);
                g_free(value);
            }
            g_strfreev(names);
        }
    }
    g_key_file_free(file);
    keys_.clear();
    for (const auto& [group, keys] : groups) keys_.insert(keys_.end(), keys.begin(), keys.end());
    return keys_;
}

Accelerators XkbOptions::read() {
    // From the server's list of options; the others there need no ordinary key.
    constexpr std::array<std::pair<std::string_view, const char*>, 3> known{{
        {"grp:win_space_toggle", "Super+space"},
        {"grp:alt_space_toggle", "Alt+space"},
        {"grp:ctrl_space_toggle", "Control+space"},
    }};
    const std::string names = rulesNames();
    // Rules, model, layouts, variants, options, each ended by a NUL.
    std::size_t at = 0;
    for (int field = 0; field < 4 && at != std::string::npos; ++field) {
        at = names.find('\0', at);
        if (at != std::string::npos) ++at;
    }
    if (at == std::string::npos || at > names.size()) return {};
    const std::string options = "," + names.substr(at, names.find('\0', at) - at) + ",";
    Accelerators found;
    for (const auto& [option, accelerator] : known) {
        if (options.find("," + std::string(option) + ",") != std::string::npos)
            found.emplace_back(accelerator);
    }
    return found;
}

std::string XkbOptions::rulesNames() {
    if (connection_ && connection_->isLost()) connection_.reset();
    if (!connection_) {
        try {
            connection_ = std::make_unique<X11Connection>();
        } catch (const std::runtime_error&) {
            return {};
        }
        property_ = connection_->intern("_XKB_RULES_NAMES");
    }
    const auto cookie =
        xcb_get_property(connection_->get(), 0, connection_->root(), property_, XCB_ATOM_STRING, 0, 1024);
    const XcbPtr<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection_->get(), cookie, nullptr));
    if (!reply || reply->format != 8) return {};
    return {static_cast<const char*>(xcb_get_property_value(reply.get())),
            static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
}

} // namespace hopsel
