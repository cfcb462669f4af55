// Twenty thousand random keys on two keyboards, a session that answers as it likes, late answers,
// declarations and stops of the helper in between: the desktop gets each key once and in order, but for those
// that were swallowed.
#include "desktops/keys_machine/virtual_keyboard.h"
#include "platform/linux/keys_helper/helper_process.h"
#include "platform/linux/keys_helper/key_words.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <gtest/gtest.h>
#include <linux/input-event-codes.h>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace hopsel {
namespace {

constexpr std::size_t keysToType = 20'000;
constexpr auto onlyFence = "f5-"; // a key that nothing else types

struct Fingers {
    Fingers(const std::string& name, std::uint16_t fenceKey) : device(name), fence(fenceKey) {}

    VirtualDevice device;
    std::uint16_t fence; ///< a modifier that nothing else types
    std::unique_ptr<DesktopKeyboard> desktop;
    std::set<std::uint16_t> down;
    std::vector<std::string> typed;
    std::vector<std::string> arrived;

    void toggle(std::uint16_t key) {
        const bool isPress = down.insert(key).second;
        if (!isPress) down.erase(key);
        device.key(key, isPress ? 1 : 0);
        typed.push_back(key_words::nameOf(key) + (isPress ? "+" : "-"));
    }
    void collect() {
        for (const std::string& word : desktop->arrived()) arrived.push_back(word);
    }
};

/// What was typed without some presses and the releases that belong to them; how many of them.
std::size_t requireInOrder(const Fingers& fingers) {
    std::set<std::string> missing;
    std::size_t swallowed = 0;
    auto next = fingers.arrived.begin();
    for (const std::string& word : fingers.typed) {
        const std::string name = word.substr(0, word.size() - 1);
        if (word.back() == '-' && missing.erase(name) == 1) continue;
        if (next != fingers.arrived.end() && *next == word) {
            ++next;
            continue;
        }
        // A key that was swallowed and pressed again at once: it was the second press that arrived.
        if (word.back() == '-' && next != fingers.arrived.begin() && *(next - 1) == name + "+") {
            --next;
            ++swallowed;
            continue;
        }
        EXPECT_EQ(word.back(), '+') << "a release was lost, or keys changed places: " << word
                                    << " typed, arrived "
                                    << (next == fingers.arrived.end() ? "nothing" : *next) << " after "
                                    << next - fingers.arrived.begin() << " of " << fingers.arrived.size();
        if (testing::Test::HasFailure()) return swallowed;
        missing.insert(name);
        ++swallowed;
    }
    EXPECT_TRUE(next == fingers.arrived.end()) << "nobody typed " << *next;
    return swallowed;
}

TEST(RandomKeys, ReachTheDesktopOnceAndInOrder) {
    std::mt19937 random(16);
    const auto upTo = [&](unsigned last) { return std::uniform_int_distribution<unsigned>(0, last)(random); };
    Fingers left("Left", KEY_LEFTMETA);
    Fingers right("Right", KEY_RIGHTMETA);
    HelperProcess helper({"--mirror-settles-in-ms", "0", "--answer-within-ms", "1000"});
    helper.send(to_helper::Hello{});
    const auto declare = [&] {
        helper.declare({"49|leftControl", "0|leftControl", "49|leftOption,rightControl", "122|"});
    };
    declare();
    helper.until("2/0:on");
    for (Fingers* hand : {&left, &right})
        hand->desktop =
            std::make_unique<DesktopKeyboard>(DesktopKeyboard::mirrorOf(hand == &left ? "Left" : "Right"));

    // Positions of letters, modifiers and function keys, with the declared ones more often.
    const std::array<std::uint16_t, 8> favourites{29, 57, 30, 59, 97, 56, 29, 57};
    std::size_t asked = 0;
    std::size_t late = 0;
    const auto listen = [&](std::string_view last) {
        while (true) {
            const auto message = helper.next();
            ASSERT_TRUE(message);
            if (std::holds_alternative<to_session::Late>(*message)) ++late;
            if (std::holds_alternative<to_session::Ask>(*message)) {
                ++asked;
                // Now and then nobody answers; with three in a row the keys would take their old way again.
                if (asked % 50 != 49) helper.answer(upTo(2) != 0);
            }
            if (key_words::of(*message) == last) return;
        }
    };
    for (std::size_t typed = 0; typed < keysToType; ++typed) {
        Fingers& hand = upTo(2) == 0 ? right : left;
        const std::uint16_t key = hand.down.size() > 3 ? *hand.down.begin()
                                  : upTo(3) != 0       ? favourites.at(upTo(favourites.size() - 1))
                                                       : static_cast<std::uint16_t>(1 + upTo(57));
        hand.toggle(key);
        if (typed % 500 == 17) {
            helper.kill(SIGSTOP);
            for (int more = 0; more < 6; ++more) hand.toggle(favourites.at(upTo(favourites.size() - 1)));
            helper.kill(SIGCONT);
        }
        if (typed % 20 != 0) continue;
        // A fence: a modifier that is told when all before it, on the same keyboard, has been worked off.
        for (Fingers* each : {&left, &right}) {
            for (const char* motion : {"+", "-"}) {
                each->device.key(each->fence, *motion == '+' ? 1 : 0);
                each->typed.push_back(std::to_string(each->fence) + motion);
                listen(each->typed.back());
            }
            each->collect();
        }
        if (typed % 1'000 == 0) declare();
    }
    for (Fingers* hand : {&left, &right})
        while (!hand->down.empty()) hand->toggle(*hand->down.begin());
    left.device.type("f5+ f5-");
    right.device.type("f5+ f5-");
    for (Fingers* hand : {&left, &right}) {
        // Until the last, the desktop may have something left to read.
        hand->collect();
        std::string rest;
        if (std::find(hand->arrived.begin(), hand->arrived.end(), onlyFence) == hand->arrived.end())
            rest = hand->desktop->until(onlyFence);
        hand->typed.insert(hand->typed.end(), {"f5+", "f5-"});
        std::istringstream words(rest);
        for (std::string word; words >> word;) hand->arrived.push_back(word);
    }
    const std::size_t swallowed = requireInOrder(left) + requireInOrder(right);
    std::printf("asked %zu, late %zu, swallowed %zu of %zu keys\n", asked, late, swallowed,
                left.typed.size() + right.typed.size());
    EXPECT_GT(asked, 100U);
    EXPECT_GT(late, 0U);
    EXPECT_GT(swallowed, 50U);
}

} // namespace
} // namespace hopsel
