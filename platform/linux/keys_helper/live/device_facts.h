// What the kernel tells everybody about a device, for those that may not be opened. Stateless.
#pragma once

#include <string>
#include <string_view>

namespace hopsel::device_facts {

/// Whether somebody types on it, as far as its list of keys tells; `path` is a device in /dev/input. Our own
/// mirrors do not count.
bool isKeyboard(const std::string& path);

/// The same from the text of that list: hexadecimal words, the highest first.
bool hasLetters(std::string_view keys);

} // namespace hopsel::device_facts
