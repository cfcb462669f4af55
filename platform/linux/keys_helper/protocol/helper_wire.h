// The messages between session and key helper as bytes, one message a packet of a SOCK_SEQPACKET socket.
//
// Stateless. Each side takes the other for hostile: a packet is either exactly one message, with every value
// within its bounds, or nothing at all.
#pragma once

#include "platform/linux/keys_helper/protocol/helper_messages.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace hopsel::helper_wire {

/// No message is longer.
inline constexpr std::size_t maxPacket = 128;

/// How long a keyboard stands still for an answer.
inline constexpr std::chrono::milliseconds answerLimit{20};
/// So many late answers in a row end the filter.
inline constexpr int lateAnswersAllowed = 3;

using Packet = std::vector<std::uint8_t>;
using Bytes = std::span<const std::uint8_t>;

Packet encode(const to_helper::Message& message);
Packet encode(const to_session::Message& message);

std::optional<to_helper::Message> decodeToHelper(Bytes packet);
std::optional<to_session::Message> decodeToSession(Bytes packet);

} // namespace hopsel::helper_wire
