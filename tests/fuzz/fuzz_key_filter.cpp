// Whatever keyboards type and a session says, in whatever order: the desktop gets presses and releases in
// turn for every key, the session is told no question that it did not declare, and in the end nothing is
// down.
//
// The input is a row of steps, one byte each: what happens, and to which of four keys or two keyboards.
#include "platform/linux/keys_helper/filter/key_filter.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <linux/input-event-codes.h>
#include <set>
#include <utility>

using namespace hopsel;

namespace {

void require(bool holds) {
    if (!holds) std::abort();
}

constexpr std::array<std::uint16_t, 4> keys{KEY_LEFTCTRL, KEY_CAPSLOCK, KEY_SPACE, KEY_F5};

std::uint16_t positionOf(std::uint16_t linuxCode) {
    constexpr std::array<std::uint16_t, 4> positions{59, 57, 49, 96};
    for (std::size_t index = 0; index < keys.size(); ++index)
        if (keys.at(index) == linuxCode) return positions.at(index);
    return 0;
}

class Desktop final : public KeyFilter::Output {
  public:
    std::set<std::pair<KeyboardId, std::uint16_t>> down;
    std::set<std::uint16_t> declared;

  private:
    void forward(KeyboardId keyboard, const std::vector<DeviceEvent>& events) override {
        require(!events.empty());
        for (const DeviceEvent& event : events) {
            if (event.type != EV_KEY) continue;
            const std::pair key(keyboard, event.code);
            if (event.value == 1) require(down.insert(key).second);
            if (event.value == 0) require(down.erase(key) == 1);
        }
    }
    void tell(const to_session::Message& message) override {
        if (const auto* ask = std::get_if<to_session::Ask>(&message))
            require(declared.contains(ask->combination.keyCode));
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Desktop desktop;
    KeyFilter filter(desktop, positionOf);
    std::array<std::set<std::uint16_t>, 2> fingers;
    std::array<bool, 2> isThere{};
    const auto frame = [&](KeyboardId keyboard, std::uint16_t key, std::int32_t value, bool isRecovered) {
        filter.keyboardFrame(keyboard, {0, {{EV_MSC, MSC_SCAN, key}, {EV_KEY, key, value}}, isRecovered});
    };
    for (std::size_t step = 0; step < size; ++step) {
        const unsigned what = data[step] & 15U;
        const unsigned which = data[step] >> 4U;
        const KeyboardId keyboard = which & 1U;
        const std::uint16_t key = keys.at(which >> 1U & 3U);
        if (what > 7 && !isThere.at(keyboard)) {
            filter.add(keyboard, {});
            isThere.at(keyboard) = true;
        }
        switch (what) {
        case 0: filter.answer(filter.asked().value_or(0), (which & 1U) != 0); break;
        case 1: filter.answerIsLate(); break;
        case 2: filter.answer(which, true); break;
        case 3: filter.pointerUsed(); break;
        case 4: filter.endSession(); break;
        case 5:
        case 6: {
            KeyDeclaration declaration{.meanings = told_keys::plainMeanings(),
                                       .combinations = {{49, {ModifierKey::leftControl}}, {96, {}}}};
            if ((which & 1U) != 0) declaration.combinations.push_back({57, {ModifierKey::leftControl}});
            for (const auto& combination : declaration.combinations)
                desktop.declared.insert(combination.keyCode);
            filter.declare(declaration);
            break;
        }
        case 7:
            if (std::exchange(isThere.at(keyboard), false)) filter.remove(keyboard);
            fingers.at(keyboard).clear();
            break;
        case 8:
            if (filter.isAtRest(keyboard)) filter.setMirrored(keyboard, (which & 2U) != 0);
            break;
        case 9:
            if (fingers.at(keyboard).contains(key)) frame(keyboard, key, 2, false);
            break;
        default: {
            const bool isPress = fingers.at(keyboard).insert(key).second;
            if (!isPress) fingers.at(keyboard).erase(key);
            frame(keyboard, key, isPress ? 1 : 0, what == 10);
        }
        }
    }
    filter.endSession();
    require(!filter.asked());
    for (const KeyboardId keyboard : {0U, 1U}) {
        if (!isThere.at(keyboard)) continue;
        for (const std::uint16_t key : fingers.at(keyboard)) frame(keyboard, key, 0, false);
        require(filter.isAtRest(keyboard));
    }
    require(desktop.down.empty());
    return 0;
}
