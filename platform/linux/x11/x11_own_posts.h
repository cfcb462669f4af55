// Knows the key events that we posted through XTEST when they come back.
//
// X events carry no mark of ours, and all XTEST clients share one device. But a raw event of our own post
// bears the sequence number of the request that caused it, because the server writes it while it executes
// that request. Two cases need more: a post of a key that is in that state already makes no event, and a post
// while the keyboard is frozen makes its event later. The state of the keys, asked right after the post,
// tells them apart. Owned by the hook; forgets everything with its connection.
#pragma once

#include <bitset>
#include <cstdint>
#include <deque>

namespace hopsel {

class X11OwnPosts {
  public:
    void posted(std::uint32_t sequence, std::uint8_t key, bool press);

    /// Is this raw event one of ours? Each post is recognised once.
    bool recognise(std::uint32_t sequence, std::uint8_t key, bool press);

    /// `pressed` is the state of the keys as of the request `sequence`.
    void settle(std::uint32_t sequence, const std::bitset<256>& pressed);

    bool empty() const { return posts_.empty(); }

  private:
    struct Post {
        std::uint32_t sequence;
        std::uint8_t key;
        bool press;
        bool isDeferred; ///< made while the keyboard was frozen; its event has another sequence number
    };
    std::deque<Post> posts_;
};

} // namespace hopsel
