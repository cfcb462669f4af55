#include "platform/linux/keys_helper/live/device_facts.h"

#include "platform/linux/keys_helper/live/input_device.h"

#include <charconv>
#include <cstdint>
#include <fstream>
#include <linux/input-event-codes.h>

namespace hopsel::device_facts {

namespace {

std::string lineOf(const std::string& path) {
    std::ifstream file(path);
    std::string line;
    std::getline(file, line);
    return line;
}

} // namespace

bool hasLetters(std::string_view keys) {
    const auto lastSpace = keys.find_last_of(' ');
    if (lastSpace != std::string_view::npos) keys.remove_prefix(lastSpace + 1);
    std::uint64_t word = 0;
    const auto [end, error] = std::from_chars(keys.data(), keys.data() + keys.size(), word, 16);
    if (error != std::errc{} || end != keys.data() + keys.size()) return false;
    constexpr std::uint64_t letters = (std::uint64_t{2} << KEY_S) - (std::uint64_t{1} << KEY_ESC);
    return (word & letters) == letters;
}

bool isKeyboard(const std::string& path) {
    const std::string facts = "/sys/class/input/" + path.substr(path.find_last_of('/') + 1) + "/device/";
    return hasLetters(lineOf(facts + "capabilities/key")) &&
           lineOf(facts + "phys") != InputDevice::mirrorPlace;
}

} // namespace hopsel::device_facts
