#include "platform/linux/x11/x11_keymap.h"

#include <memory>
#include <xkbcommon/xkbcommon-x11.h>

namespace hopsel::x11_keymap {

namespace {
struct ContextDeleter {
    void operator()(xkb_context* context) const { xkb_context_unref(context); }
};
struct KeymapDeleter {
    void operator()(xkb_keymap* keymap) const { xkb_keymap_unref(keymap); }
};
} // namespace

KeyMeanings readMeanings(X11Connection& connection) {
    const std::unique_ptr<xkb_context, ContextDeleter> context(
        xkb_context_new(XKB_CONTEXT_NO_DEFAULT_INCLUDES));
    const auto device = xkb_x11_get_core_keyboard_device_id(connection.get());
    if (!context || device < 0) return {};
    const std::unique_ptr<xkb_keymap, KeymapDeleter> keymap(
        xkb_x11_keymap_new_from_device(context.get(), connection.get(), device, XKB_KEYMAP_COMPILE_NO_FLAGS));
    return keymap ? KeyMeanings(keymap.get()) : KeyMeanings();
}

} // namespace hopsel::x11_keymap
