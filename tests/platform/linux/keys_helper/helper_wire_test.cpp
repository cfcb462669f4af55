// What passes between session and helper, and what is refused: by its form, and by the policy.
#include "platform/linux/keys_helper/protocol/helper_wire.h"

#include <gtest/gtest.h>
#include <linux/input-event-codes.h>
#include <vector>

namespace hopsel {
namespace {

using namespace helper_wire;

const ShortcutKey controlSpace{49, {ModifierKey::leftControl}};

TEST(HelperWire, SaysBackWhatWasSaid) {
    KeyDeclaration full;
    full.meanings.fill(std::nullopt);
    full.meanings[3] = ModifierKey::rightControl;
    full.combinations.assign(KeyDeclaration::maxCombinations, controlSpace);
    for (const to_helper::Message& message : std::initializer_list<to_helper::Message>{
             to_helper::Hello{7}, to_helper::Declare{}, to_helper::Declare{full},
             to_helper::Answer{0x1234'5678, true}}) {
        const Packet packet = encode(message);
        EXPECT_LE(packet.size(), maxPacket);
        EXPECT_EQ(decodeToHelper(packet), message);
        EXPECT_EQ(decodeToSession(packet), std::nullopt); // sent back to where it came from
    }
    using namespace to_session;
    for (const to_session::Message& message : std::initializer_list<to_session::Message>{
             Welcome{2}, State{3, 1, Filter::waiting, 4}, Held{told_keys::maskOfAll},
             Modifier{told_keys::count - 1, true, 0xFEDC'BA98'7654'3210}, Other{Other::Kind::pointer},
             Ask{9, controlSpace}, Released{300}, Late{~0U}, Trouble{Trouble::Kind::noMirror, ""},
             Trouble{Trouble::Kind::heldElsewhere, std::string(Trouble::maxName, 'k')}}) {
        const Packet packet = encode(message);
        EXPECT_LE(packet.size(), maxPacket);
        EXPECT_EQ(decodeToSession(packet), message);
    }
    EXPECT_EQ(std::get<Trouble>(decodeToSession(encode(Trouble{{}, std::string(500, 'x')})).value())
                  .keyboard.size(),
              Trouble::maxName);
}

TEST(HelperWire, TakesNothingThatIsNotExactlyAMessage) {
    for (const Packet& packet : {Packet{}, Packet{0}, Packet{200, 1, 2}, Packet{3, 1, 0, 0, 0, 2}})
        EXPECT_EQ(decodeToHelper(packet), std::nullopt);
    Packet declare = encode(to_helper::Declare{.declaration = {.combinations = {controlSpace}}});
    for (std::size_t size = 0; size < declare.size(); ++size)
        EXPECT_EQ(decodeToHelper(Bytes(declare).first(size)), std::nullopt) << size;
    declare.push_back(0);
    EXPECT_EQ(decodeToHelper(declare), std::nullopt) << "one byte too many";
    declare.pop_back();
    declare[1] = 8; // there is no ninth modifier
    EXPECT_EQ(decodeToHelper(declare), std::nullopt);

    Packet many(1 + told_keys::count, 255);
    many[0] = 2;
    many.push_back(KeyDeclaration::maxCombinations + 1);
    many.resize(many.size() + 3 * (KeyDeclaration::maxCombinations + 1));
    EXPECT_EQ(decodeToHelper(many), std::nullopt);

    for (const Packet& packet : {Packet{34, 0, 0x10}, Packet{35, 12, 1, 0, 0, 0, 0, 0, 0, 0, 0},
                                 Packet{33, 1, 0, 3, 0}, Packet{36, 2}, Packet{40, 5}})
        EXPECT_EQ(decodeToSession(packet), std::nullopt);
}

TEST(HelperPolicy, NoSessionCanHaveItSpellWhatIsTyped) {
    KeyDeclaration greedy;
    const auto declared = [&](std::vector<ShortcutKey> combinations) {
        greedy.combinations = std::move(combinations);
        return greedy.permitted().combinations;
    };
    EXPECT_TRUE(declared({{0, {}}, {0, {ModifierKey::leftShift}}, {0, {ModifierKey::rightOption}}, {49, {}}})
                    .empty());
    EXPECT_EQ(declared({controlSpace, controlSpace, {96, {}}}).size(), 2U);
    std::vector<ShortcutKey> alphabet;
    alphabet.reserve(50);
    for (std::uint16_t code = 0; code < 50; ++code) alphabet.push_back({code, {ModifierKey::leftControl}});
    EXPECT_EQ(declared(alphabet).size(), KeyDeclaration::maxCombinations);

    // A Shift that is said to be Control would make every capital letter a combination.
    const auto meaning = [&](std::uint16_t linuxCode, ModifierKey modifier) {
        const std::size_t index = told_keys::indexOf(linuxCode).value();
        greedy.meanings.at(index) = modifier;
        return greedy.permitted().meanings.at(index);
    };
    EXPECT_EQ(meaning(KEY_LEFTSHIFT, ModifierKey::leftControl), ModifierKey::leftShift);
    EXPECT_EQ(meaning(KEY_RIGHTALT, ModifierKey::rightCommand), ModifierKey::rightOption);
    EXPECT_EQ(meaning(KEY_LEFTALT, ModifierKey::leftCommand), ModifierKey::leftCommand);
    EXPECT_EQ(meaning(KEY_CAPSLOCK, ModifierKey::leftControl), ModifierKey::leftControl);
}

} // namespace
} // namespace hopsel
