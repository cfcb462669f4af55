// Random typing, much faster than fingers, against a model that says in a few lines what must come out of it.
#include "hook_rig.h"

#include <gtest/gtest.h>
#include <map>
#include <random>
#include <regex>

using namespace hopsel;
using namespace hopsel::test;

namespace {

const ShortcutKey plainF5{96, {}};
const ShortcutKey rightControlSpace{49, {ModifierKey::rightControl}};
constexpr std::array keys{key::space,        key::space, key::leftShift, key::rightShift,
                          key::rightControl, key::a,     key::s,         key::f5};

struct Expected {
    std::string window;
    std::string heard;
    std::size_t fired = 0;
};

/// What a keyboard with a perfect filter does.
class Model {
  public:
    void feed(KeyStroke stroke) {
        const auto modifier = modifiers_.find(stroke.code);
        if (modifier != modifiers_.end()) {
            stroke.isDown ? held_.insert(modifier->second) : held_.remove(modifier->second);
            hear((stroke.isDown ? "+" : "-") + std::string(rawValue(modifier->second)));
        } else if (stroke.isDown && isShortcut(stroke.code)) {
            swallowed_.insert(stroke.code);
            ++expected_.fired;
            return;
        } else if (!stroke.isDown && swallowed_.erase(stroke.code) > 0) {
            return;
        } else {
            hear(stroke.isDown ? "k+" : "k-");
        }
        append(expected_.window, (stroke.isDown ? "+" : "-") + std::to_string(stroke.code));
    }

    const Expected& expected() const { return expected_; }

  private:
    bool isShortcut(std::uint16_t code) const {
        if (code == key::f5) return held_.empty();
        return code == key::space && (held_ == ModifierSet{ModifierKey::leftShift} ||
                                      held_ == ModifierSet{ModifierKey::rightControl});
    }
    void hear(const std::string& text) { append(expected_.heard, text); }
    static void append(std::string& list, const std::string& text) {
        list += (list.empty() ? "" : " ") + text;
    }

    const std::map<std::uint16_t, ModifierKey> modifiers_{{key::leftShift, ModifierKey::leftShift},
                                                          {key::rightShift, ModifierKey::rightShift},
                                                          {key::rightControl, ModifierKey::rightControl}};
    ModifierSet held_;
    std::set<std::uint16_t> swallowed_;
    Expected expected_;
};

class KeyHookStress : public testing::TestWithParam<unsigned> {};

TEST_P(KeyHookStress, NothingLostLeakedOrOutOfOrder) {
    HookRig rig;
    rig.start({leftShiftSpace, rightControlSpace, plainF5});
    std::mt19937 random(GetParam());
    std::set<std::uint16_t> down;
    Model model;
    const auto type = [&](const std::vector<KeyStroke>& strokes) {
        for (const KeyStroke stroke : strokes) model.feed(stroke);
        rig.keyboard->post(strokes);
    };
    for (int burst = 0; burst < 300; ++burst) {
        std::vector<KeyStroke> strokes(1 + random() % 6);
        for (KeyStroke& stroke : strokes) {
            stroke.code = keys[random() % keys.size()];
            stroke.isDown = down.erase(stroke.code) == 0;
            if (stroke.isDown) down.insert(stroke.code);
        }
        type(strokes);
    }
    for (const std::uint16_t code : down) type({{code, false}});
    type({{key::z, true}, {key::z, false}});
    ASSERT_TRUE(rig.window->waitFor([](const auto& records) {
        return !records.empty() && records.back().code == key::z &&
               records.back().kind == XRecord::Kind::keyRelease;
    }));
    rig.settle();
    for (const bool isDown : {true, false}) model.feed({key::q, isDown});

    const std::string got = std::regex_replace(rig.window->keys(), std::regex("\\*[0-9]+ "), "");
    EXPECT_EQ(got, model.expected().window);
    EXPECT_EQ(rig.heard(), model.expected().heard);
    EXPECT_EQ(rig.fired.size(), model.expected().fired);
}

INSTANTIATE_TEST_SUITE_P(Seeds, KeyHookStress, testing::Values(1U, 2U, 3U, 4U));

} // namespace
