// The listening source over the key helper: turns what it tells of modifiers, and of "something else", into
// the engine's events.
//
// Shared by the engine and the key session, which hands it what the helper tells; the link outlives it. The
// helper runs while this is started, and not a moment longer: no device is read for an engine that is off.
#pragma once

#include "core/platform/event_source.h"
#include "platform/linux/keys/held_keys.h"
#include "platform/linux/keys/told_time.h"
#include "platform/linux/keys_helper/session/helper_link.h"

#include <functional>
#include <memory>

namespace hopsel {

class HelperListenSource final : public EventSource {
  public:
    using Clock = std::function<double()>;

    HelperListenSource(std::shared_ptr<HelperLink> link, Clock clock)
        : link_(std::move(link)), clock_(std::move(clock)) {}
    ~HelperListenSource() override { stopListening(); }

    void start() override;
    void stop() override { stopListening(); }

    /// What the told keys mean to the keymap.
    void setMeanings(const told_keys::Meanings& meanings) { meanings_ = meanings; }
    std::uint64_t flags() const { return held_.flags(); }

    void heard(const to_session::Modifier& modifier);
    void heard(const to_session::Other& other);
    /// Keys may have come up unheard.
    void heard(const to_session::Held& held);
    void lost();

    /// A modifier key went down, and the engine has been told.
    std::function<void()> onModifierDown;

  private:
    void stopListening();
    void tell(RawEvent event, double time) const;
    KeyMeaning meaning(std::size_t key) const;

    std::shared_ptr<HelperLink> link_;
    Clock clock_;
    ToldTime time_;
    told_keys::Meanings meanings_ = told_keys::plainMeanings();
    HeldKeys held_;
    bool isStarted_ = false;
    bool knowsHeld_ = false; ///< the helper has told what is down
};

} // namespace hopsel
