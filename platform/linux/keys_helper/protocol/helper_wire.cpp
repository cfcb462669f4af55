#include "platform/linux/keys_helper/protocol/helper_wire.h"

#include "core/base/overloaded.h"
#include "platform/linux/keys_helper/protocol/packet_bytes.h"

#include <algorithm>

namespace hopsel::helper_wire {

namespace {

// The first byte of a packet. Numbers are never used again for something else.
enum Type : std::uint8_t {
    hello = 1,
    declare = 2,
    answer = 3,
    welcome = 32,
    state = 33,
    held = 34,
    modifier = 35,
    other = 36,
    ask = 37,
    released = 38,
    late = 39,
    trouble = 40,
};

constexpr std::uint8_t noModifier = 255;

void put(PacketWriter& packet, const ShortcutKey& combination) {
    packet.put(combination.keyCode);
    packet.put(combination.modifiers.bits());
}

ShortcutKey readCombination(PacketReader& packet) {
    ShortcutKey combination;
    combination.keyCode = packet.number<std::uint16_t>();
    const auto bits = packet.number<std::uint8_t>();
    for (ModifierKey key : allModifierKeys)
        if ((bits >> static_cast<unsigned>(key) & 1U) != 0) combination.modifiers.insert(key);
    return combination;
}

void put(PacketWriter& packet, const KeyDeclaration& declaration) {
    for (const auto& meaning : declaration.meanings)
        packet.put(meaning ? static_cast<std::uint8_t>(*meaning) : noModifier);
    const std::size_t count = std::min(declaration.combinations.size(), KeyDeclaration::maxCombinations);
    packet.put(static_cast<std::uint8_t>(count));
    for (std::size_t index = 0; index < count; ++index) put(packet, declaration.combinations[index]);
}

KeyDeclaration readDeclaration(PacketReader& packet) {
    KeyDeclaration declaration;
    for (auto& meaning : declaration.meanings) {
        const auto value = packet.number<std::uint8_t>();
        meaning.reset();
        if (value == noModifier) continue;
        if (value < allModifierKeys.size())
            meaning = static_cast<ModifierKey>(value);
        else
            packet.reject();
    }
    const auto count = packet.numberUpTo(std::uint8_t{KeyDeclaration::maxCombinations});
    for (std::size_t index = 0; index < count; ++index)
        declaration.combinations.push_back(readCombination(packet));
    return declaration;
}

} // namespace

Packet encode(const to_helper::Message& message) {
    return std::visit(Overloaded{
                          [](const to_helper::Hello& told) {
                              PacketWriter packet(hello);
                              packet.put(told.version);
                              return packet.take();
                          },
                          [](const to_helper::Declare& told) {
                              PacketWriter packet(declare);
                              put(packet, told.declaration);
                              return packet.take();
                          },
                          [](const to_helper::Answer& told) {
                              PacketWriter packet(answer);
                              packet.put(told.id);
                              packet.put(told.swallow);
                              return packet.take();
                          },
                      },
                      message);
}

Packet encode(const to_session::Message& message) {
    return std::visit(Overloaded{
                          [](const to_session::Welcome& told) {
                              PacketWriter packet(welcome);
                              packet.put(told.version);
                              return packet.take();
                          },
                          [](const to_session::State& told) {
                              PacketWriter packet(state);
                              packet.put(told.keyboards);
                              packet.put(told.unreadable);
                              packet.put(told.filter);
                              packet.put(told.refused);
                              return packet.take();
                          },
                          [](const to_session::Held& told) {
                              PacketWriter packet(held);
                              packet.put(told.keys);
                              return packet.take();
                          },
                          [](const to_session::Modifier& told) {
                              PacketWriter packet(modifier);
                              packet.put(told.key);
                              packet.put(told.isDown);
                              packet.put(told.microseconds);
                              return packet.take();
                          },
                          [](const to_session::Other& told) {
                              PacketWriter packet(other);
                              packet.put(told.kind);
                              return packet.take();
                          },
                          [](const to_session::Ask& told) {
                              PacketWriter packet(ask);
                              packet.put(told.id);
                              put(packet, told.combination);
                              return packet.take();
                          },
                          [](const to_session::Released& told) {
                              PacketWriter packet(released);
                              packet.put(told.keyCode);
                              return packet.take();
                          },
                          [](const to_session::Late& told) {
                              PacketWriter packet(late);
                              packet.put(told.id);
                              return packet.take();
                          },
                          [](const to_session::Trouble& told) {
                              PacketWriter packet(trouble);
                              packet.put(told.kind);
                              packet.put(std::string_view(told.keyboard).substr(0, told.maxName));
                              return packet.take();
                          },
                      },
                      message);
}

// Braces read their fields from left to right.
std::optional<to_helper::Message> decodeToHelper(Bytes packet) {
    PacketReader reader(packet);
    std::optional<to_helper::Message> message;
    switch (reader.number<std::uint8_t>()) {
    case hello: message = to_helper::Hello{reader.number<std::uint16_t>()}; break;
    case declare: message = to_helper::Declare{readDeclaration(reader)}; break;
    case answer: message = to_helper::Answer{reader.number<std::uint32_t>(), reader.boolean()}; break;
    default: break;
    }
    return reader.isWhole() ? message : std::nullopt;
}

std::optional<to_session::Message> decodeToSession(Bytes packet) {
    using namespace to_session;
    PacketReader reader(packet);
    std::optional<to_session::Message> message;
    switch (reader.number<std::uint8_t>()) {
    case welcome: message = Welcome{reader.number<std::uint16_t>()}; break;
    case state:
        message = State{reader.number<std::uint8_t>(), reader.number<std::uint8_t>(),
                        reader.enumeration(Filter::on), reader.number<std::uint8_t>()};
        break;
    case held: message = Held{reader.numberUpTo(told_keys::maskOfAll)}; break;
    case modifier:
        message = Modifier{reader.numberUpTo(std::uint8_t{told_keys::count - 1}), reader.boolean(),
                           reader.number<std::uint64_t>()};
        break;
    case other: message = Other{reader.enumeration(Other::Kind::pointer)}; break;
    case ask: message = Ask{reader.number<std::uint32_t>(), readCombination(reader)}; break;
    case released: message = Released{reader.number<std::uint16_t>()}; break;
    case late: message = Late{reader.number<std::uint32_t>()}; break;
    case trouble:
        message = Trouble{reader.enumeration(Trouble::Kind::noMirror), reader.text(Trouble::maxName)};
        break;
    default: break;
    }
    return reader.isWhole() ? message : std::nullopt;
}

} // namespace hopsel::helper_wire
