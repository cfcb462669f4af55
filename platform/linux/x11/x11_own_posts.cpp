#include "platform/linux/x11/x11_own_posts.h"

#include <algorithm>

namespace hopsel {

namespace {
/// Sequence numbers wrap around.
bool isBefore(std::uint32_t a, std::uint32_t b) { return static_cast<std::int32_t>(a - b) < 0; }
} // namespace

void X11OwnPosts::posted(std::uint32_t sequence, std::uint8_t key, bool press) {
    posts_.push_back({sequence, key, press, false});
}

bool X11OwnPosts::recognise(std::uint32_t sequence, std::uint8_t key, bool press) {
    const auto post = std::find_if(posts_.begin(), posts_.end(), [&](const Post& p) {
        return p.key == key && p.press == press && (p.isDeferred || p.sequence == sequence);
    });
    if (post == posts_.end()) return false;
    // Posts come back in order: what stands before this one never will.
    posts_.erase(posts_.begin(), post + 1);
    return true;
}

void X11OwnPosts::settle(std::uint32_t sequence, const std::bitset<256>& pressed) {
    for (auto post = posts_.begin(); post != posts_.end();) {
        const bool settled = isBefore(post->sequence, sequence) && !post->isDeferred;
        if (settled && pressed[post->key] == post->press) {
            post = posts_.erase(post);
            continue;
        }
        post->isDeferred |= settled;
        ++post;
    }
}

} // namespace hopsel
