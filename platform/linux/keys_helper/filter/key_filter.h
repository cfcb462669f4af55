// Decides what becomes of every key of every keyboard: what the session is told of it, and whether the mirror
// passes it on. It touches no device and knows no clock, so that all of it can be tried without either.
//
// Owned by the helper, one thread. Frames are worked off in the order in which they come, those of all
// keyboards in one row: while a combination is asked about, everything behind it waits, as a key that
// overtakes another would be a wrong word. What comes out does so through `Output`, during the call, and must
// not call back in.
//
// A listener needs very little, and gets no more: presses and releases of the told keys, and that something
// else was pressed while one of them was down. A key that comes up spoils no tap, a key without a told key
// can spoil none, and after the first that does the others change nothing.
#pragma once

#include "platform/linux/keys_helper/filter/filtered_keyboard.h"
#include "platform/linux/keys_helper/protocol/helper_wire.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <vector>

namespace hopsel {

/// As the helper numbers the devices.
using KeyboardId = std::uint32_t;

class KeyFilter {
  public:
    class Output {
      public:
        Output() = default;
        Output(const Output&) = delete;
        Output& operator=(const Output&) = delete;
        virtual ~Output() = default;
        /// To the mirror of a keyboard that has one; never empty.
        virtual void forward(KeyboardId keyboard, const std::vector<DeviceEvent>& events) = 0;
        virtual void tell(const to_session::Message& message) = 0;
    };
    /// The virtual key code of a key, by its Linux code.
    using PositionOf = std::uint16_t (*)(std::uint16_t linuxCode);

    KeyFilter(Output& output, PositionOf positionOf) : output_(output), positionOf_(positionOf) {}

    void add(KeyboardId keyboard, const KeysDown& down);
    /// Unplugged: what it held is up, its mirror has been told so, and what waited of it is dropped.
    void remove(KeyboardId keyboard);
    /// Whether its keys reach the desktop through its mirror. Changes only while the keyboard is at rest.
    void setMirrored(KeyboardId keyboard, bool isMirrored) {
        keyboards_.at(keyboard).isMirrored = isMirrored;
    }
    /// Nothing of it is down or waits. The moment for taking it from the desktop, or giving it back: the
    /// release of a key goes where its press went.
    bool isAtRest(KeyboardId keyboard) const;
    /// Has its mirror let go of everything, and passes nothing on to it any more: for an end that cannot wait
    /// for the fingers.
    void giveBack(KeyboardId keyboard);

    void keyboardFrame(KeyboardId keyboard, InputFrame frame);
    /// A button or a step of the wheel.
    void pointerUsed();

    /// From now on; only what is permitted of it counts. Gives the session another three late answers.
    void declare(const KeyDeclaration& declaration);
    /// Which told keys are down, for a session that has just come.
    void tellHeld();
    /// There is no session any more: keys pass, and nobody is asked.
    void endSession();

    /// Whether combinations are declared and asked about.
    bool isWanted() const { return !combinations_.empty() && lateAnswers_ < helper_wire::lateAnswersAllowed; }
    std::uint8_t refused() const { return refused_; }

    /// The question that everything waits for.
    std::optional<std::uint32_t> asked() const { return asked_; }
    /// An answer to any other question is one that came too late.
    void answer(std::uint32_t id, bool swallow);
    /// The time for the answer is over.
    void answerIsLate();

  private:
    struct Waiting {
        std::optional<KeyboardId> keyboard; ///< none: a pointer
        InputFrame frame;
        std::size_t next = 0;             ///< the first event that has not been looked at
        std::vector<DeviceEvent> passing; ///< of those before it
    };
    /// A keyboard says some dozen things in twenty milliseconds; what says more is no keyboard to wait for.
    static constexpr std::size_t maxWaiting = 512;

    void take(Waiting item);
    void workOff();
    /// False if the session has to be asked first.
    bool workOff(Waiting& item);
    /// Whether the event is to be passed on; nothing if the session has to be asked first.
    std::optional<bool> key(FilteredKeyboard& keyboard, const DeviceEvent& event, const InputFrame& frame);
    bool isCandidate(const FilteredKeyboard& keyboard, std::uint16_t linuxCode) const;
    /// The key with what is held now.
    ShortcutKey combinationOf(std::uint16_t linuxCode) const {
        return {positionOf_(linuxCode), modifiersDown()};
    }
    void tellPress(std::uint16_t linuxCode, const InputFrame& frame);
    void tellRelease(std::uint16_t linuxCode, const InputFrame& frame);
    void tellOther(to_session::Other::Kind kind);
    void resolve(bool swallow);
    void pass(KeyboardId id, FilteredKeyboard& keyboard, const std::vector<DeviceEvent>& events);
    told_keys::Mask toldKeysDown() const;
    ModifierSet modifiersDown() const;

    Output& output_;
    PositionOf positionOf_;
    std::map<KeyboardId, FilteredKeyboard> keyboards_;
    std::deque<Waiting> waiting_;

    told_keys::Meanings meanings_ = told_keys::plainMeanings();
    ShortcutSet combinations_;
    std::uint8_t refused_ = 0;

    std::optional<std::uint32_t> asked_;
    ShortcutKey askedFor_;
    std::uint32_t lastId_ = 0;
    std::optional<bool> verdict_; ///< on the event that was asked about, until it is looked at again
    int lateAnswers_ = 0;
    bool otherTold_ = true; ///< since the last press of a told key
};

} // namespace hopsel
