#include "platform/linux/wayland/wayland_keymap.h"

#include <cstdint>
#include <cstring>
#include <string>
#include <unistd.h>
#include <utility>

namespace hopsel {

namespace {

/// Some hundred times what keymaps are.
constexpr std::size_t largestKeymap = 16 << 20;

struct KeymapUnref {
    void operator()(xkb_keymap* keymap) const { xkb_keymap_unref(keymap); }
};

template <class... Arguments>
void ignore(void* /*self*/, Arguments... /*arguments*/) {}

} // namespace

struct WaylandKeymap::Events {
    static WaylandKeymap& of(void* self) { return *static_cast<WaylandKeymap*>(self); }

    static void global(void* self, wl_registry* registry, std::uint32_t name, const char* interface,
                       std::uint32_t /*version*/) {
        WaylandKeymap& us = of(self);
        if (us.seat_ != nullptr || std::strcmp(interface, wl_seat_interface.name) != 0) return;
        us.seat_ = static_cast<wl_seat*>(wl_registry_bind(registry, name, &wl_seat_interface, 1));
        wl_seat_add_listener(us.seat_, &seatEvents, self);
    }
    static void capabilities(void* self, wl_seat* /*seat*/, std::uint32_t what) {
        WaylandKeymap& us = of(self);
        const bool hasKeyboard = (what & WL_SEAT_CAPABILITY_KEYBOARD) != 0;
        if (hasKeyboard && us.keyboard_ == nullptr) {
            us.keyboard_ = wl_seat_get_keyboard(us.seat_);
            wl_keyboard_add_listener(us.keyboard_, &keyboardEvents, self);
        } else if (!hasKeyboard && us.keyboard_ != nullptr) {
            wl_keyboard_destroy(std::exchange(us.keyboard_, nullptr));
        }
    }
    static void keymap(void* self, wl_keyboard* /*keyboard*/, std::uint32_t format, std::int32_t file,
                       std::uint32_t size) {
        if (format == WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1) of(self).takeKeymap(file, size);
        close(file);
    }

    static constexpr wl_registry_listener registryEvents{global, ignore};
    static constexpr wl_seat_listener seatEvents{capabilities, ignore};
    static constexpr wl_keyboard_listener keyboardEvents{keymap, ignore, ignore, ignore, ignore, ignore};
};

WaylandKeymap::WaylandKeymap()
    : context_(xkb_context_new(XKB_CONTEXT_NO_DEFAULT_INCLUDES), xkb_context_unref) {}

void WaylandKeymap::start() {
    if (display_ != nullptr || !context_) return;
    display_ = wl_display_connect(nullptr);
    if (display_ == nullptr) return;
    registry_ = wl_display_get_registry(display_);
    wl_registry_add_listener(registry_, &Events::registryEvents, this);
    notifier_ = std::make_unique<QSocketNotifier>(wl_display_get_fd(display_), QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] { read(); });
    wl_display_flush(display_);
}

void WaylandKeymap::stop() {
    if (display_ == nullptr) return;
    notifier_->setEnabled(false);
    notifier_.release()->deleteLater(); // its signal may be the one that brought us here
    if (keyboard_ != nullptr) wl_keyboard_destroy(std::exchange(keyboard_, nullptr));
    if (seat_ != nullptr) wl_seat_destroy(std::exchange(seat_, nullptr));
    wl_registry_destroy(std::exchange(registry_, nullptr));
    wl_display_disconnect(std::exchange(display_, nullptr));
}

void WaylandKeymap::read() {
    while (wl_display_prepare_read(display_) != 0) wl_display_dispatch_pending(display_);
    const bool isRead = wl_display_read_events(display_) >= 0;
    if (!isRead || wl_display_dispatch_pending(display_) < 0) return stop();
    wl_display_flush(display_);
}

// The text may be without its closing NUL, and its file shorter than it says: it is not mapped, but copied.
void WaylandKeymap::takeKeymap(int file, std::size_t size) const {
    if (size == 0 || size > largestKeymap) return;
    std::string text(size, '\0');
    const auto length = pread(file, text.data(), size, 0);
    if (length <= 0) return;
    text.resize(static_cast<std::size_t>(length));
    while (!text.empty() && text.back() == '\0') text.pop_back();
    const std::unique_ptr<xkb_keymap, KeymapUnref> keymap(xkb_keymap_new_from_buffer(
        context_.get(), text.data(), text.size(), XKB_KEYMAP_FORMAT_TEXT_V1, XKB_KEYMAP_COMPILE_NO_FLAGS));
    if (keymap && onKeymap) onKeymap(KeyMeanings(keymap.get()));
}

} // namespace hopsel
