// Keys and messages of the helper as words: "lctrl+", "a-", "?49|leftControl". Stateless.
#pragma once

#include "platform/linux/keys_helper/filter/input_frame.h"
#include "platform/linux/keys_helper/protocol/helper_messages.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace hopsel::key_words {

std::uint16_t code(std::string_view name);
/// Keys without a name are called by their number.
std::string nameOf(std::uint16_t linuxCode);
/// The virtual key code of those that have a name here.
std::uint16_t position(std::uint16_t linuxCode);

/// Of a key event.
std::string of(const DeviceEvent& event);
std::string of(const to_session::Message& message);

} // namespace hopsel::key_words
