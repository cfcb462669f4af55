// Fingers on two keyboards, a session that answers as it likes or not at all: whatever happens, the desktop
// gets each key once, in order, or not at all, and what goes down comes up.
#include "platform/linux/keys_helper/filter_rig.h"

#include <array>
#include <gtest/gtest.h>
#include <random>
#include <set>
#include <sstream>

namespace hopsel {
namespace {

constexpr std::array<std::string_view, 9> names{"lctrl", "rctrl", "lalt", "lshift", "caps",
                                                "space", "a",     "b",    "f5"};

std::vector<std::string> wordsOf(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> words;
    for (std::string word; stream >> word;) words.push_back(word);
    return words;
}

class RandomKeys : public testing::TestWithParam<unsigned> {};

TEST_P(RandomKeys, ReachTheDesktopOnceAndInOrder) {
    std::mt19937 random(GetParam());
    const auto upTo = [&](unsigned last) { return std::uniform_int_distribution<unsigned>(0, last)(random); };
    FilterRig rig;
    rig.declare({"49|leftControl", "0|leftControl", "96|", "57|rightControl"});
    std::array<std::set<std::string_view>, 2> down;
    std::array<std::vector<std::string>, 2> typed;
    std::size_t swallowed = 0;

    const auto settle = [&] {
        if (!rig.filter.asked()) return;
        switch (upTo(4)) {
        case 0: rig.filter.answerIsLate(); break;
        case 1: rig.answer(false); break;
        default: rig.answer(true); break;
        }
    };
    const auto type = [&](std::size_t keyboard, std::string_view name, bool isPress) {
        const std::string word = std::string(name) + (isPress ? "+" : "-");
        if (isPress)
            down.at(keyboard).insert(name);
        else
            down.at(keyboard).erase(name);
        typed.at(keyboard).push_back(word);
        rig.type(word, static_cast<KeyboardId>(keyboard + 1));
    };
    for (int step = 0; step < 5'000; ++step) {
        const std::size_t keyboard = upTo(1);
        // A hand has few fingers: more modifiers than that, and nothing is a combination.
        const std::string_view name =
            down.at(keyboard).size() > 2 ? *down.at(keyboard).begin() : names.at(upTo(names.size() - 1));
        type(keyboard, name, !down.at(keyboard).contains(name));
        if (upTo(5) == 0) rig.filter.pointerUsed();
        if (upTo(2) == 0) settle();
        if (upTo(200) == 0) rig.declare({"49|leftControl", "0|leftControl", "96|", "57|rightControl"});
    }
    for (std::size_t keyboard : {0U, 1U})
        while (!down.at(keyboard).empty()) type(keyboard, *down.at(keyboard).begin(), false);
    while (rig.filter.asked()) settle();

    for (std::size_t keyboard : {0U, 1U}) {
        const auto id = static_cast<KeyboardId>(keyboard + 1);
        EXPECT_TRUE(rig.filter.isAtRest(id));
        // The desktop's keys are those typed, in their order, with some presses left out together with the
        // release that belongs to them.
        const auto arrived = wordsOf(rig.desktop(id));
        auto next = arrived.begin();
        std::set<std::string> missing;
        for (const std::string& word : typed.at(keyboard)) {
            const std::string name = word.substr(0, word.size() - 1);
            if (word.back() == '-' && missing.erase(name) == 1) continue;
            if (next != arrived.end() && *next == word) {
                ++next;
                continue;
            }
            ASSERT_EQ(word.back(), '+') << "a release was lost, or keys changed places";
            missing.insert(name);
            ++swallowed;
        }
        EXPECT_EQ(next, arrived.end()) << "keys that nobody typed";
        EXPECT_TRUE(missing.empty());
    }
    EXPECT_GT(swallowed, 20U);

    // Every modifier that was told as down was told as up.
    std::map<std::string, int> held;
    for (const std::string& word : wordsOf(rig.told()))
        if (word.back() == '+') {
            EXPECT_EQ(++held[word.substr(0, word.size() - 1)], 1) << word;
        } else if (word.back() == '-' && std::isalpha(static_cast<unsigned char>(word.front())) != 0) {
            EXPECT_EQ(--held[word.substr(0, word.size() - 1)], 0) << word;
        }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomKeys, testing::Range(1U, 6U));

} // namespace
} // namespace hopsel
