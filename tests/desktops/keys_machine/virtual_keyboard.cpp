#include "desktops/keys_machine/virtual_keyboard.h"

#include "platform/linux/keys_helper/key_words.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <linux/input.h>
#include <linux/uinput.h>
#include <poll.h>
#include <sstream>
#include <stdexcept>
#include <sys/inotify.h>
#include <sys/ioctl.h>
#include <unistd.h>
#include <utility>

namespace hopsel {

namespace {

constexpr int patience = 30'000;

int openDevice(const std::string& path) { return open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC); }

std::string textOf(int file, unsigned long request) {
    std::array<char, 80> text{};
    ioctl(file, request, text.data());
    return text.data();
}

} // namespace

VirtualDevice::VirtualDevice(const std::string& name, Kind kind) : file_(openDevice("/dev/uinput")) {
    ioctl(file_, UI_SET_EVBIT, EV_KEY);
    if (kind == Kind::mouse) {
        for (const int button : {BTN_LEFT, BTN_RIGHT}) ioctl(file_, UI_SET_KEYBIT, button);
        ioctl(file_, UI_SET_EVBIT, EV_REL);
        for (const int axis : {REL_X, REL_Y, REL_WHEEL}) ioctl(file_, UI_SET_RELBIT, axis);
    } else {
        for (int key = KEY_ESC; key < KEY_MICMUTE; ++key) ioctl(file_, UI_SET_KEYBIT, key);
        ioctl(file_, UI_SET_EVBIT, EV_MSC);
        ioctl(file_, UI_SET_MSCBIT, MSC_SCAN);
        ioctl(file_, UI_SET_EVBIT, EV_LED);
        ioctl(file_, UI_SET_LEDBIT, LED_CAPSL);
    }
    uinput_setup setup{};
    setup.id = {BUS_USB, 0x1234, 0x5678, 1};
    std::strncpy(setup.name, name.c_str(), sizeof setup.name - 1);
    ioctl(file_, UI_DEV_SETUP, &setup);
    if (ioctl(file_, UI_DEV_CREATE) != 0) throw std::runtime_error("no virtual device");
    const std::string facts = "/sys/devices/virtual/input/" + textOf(file_, UI_GET_SYSNAME(80));
    for (const auto& entry : std::filesystem::directory_iterator(facts))
        if (const std::string node = entry.path().filename(); node.starts_with("event"))
            path_ = "/dev/input/" + node;
}

void VirtualDevice::write(std::uint16_t type, std::uint16_t code, int value) const {
    std::array<input_event, 2> events{};
    events[0].type = type;
    events[0].code = code;
    events[0].value = value;
    if (::write(file_, events.data(), sizeof events) < 0) throw std::runtime_error("nothing can be typed");
}

void VirtualDevice::key(std::uint16_t linuxCode, int value) const { write(EV_KEY, linuxCode, value); }

void VirtualDevice::type(std::string_view words) const {
    std::istringstream stream{std::string(words)};
    for (std::string word; stream >> word;)
        key(key_words::code(std::string_view(word).substr(0, word.size() - 1)), word.back() == '+'   ? 1
                                                                                : word.back() == '-' ? 0
                                                                                                     : 2);
}

void VirtualDevice::turnWheel() const { write(EV_REL, REL_WHEEL, 1); }

void VirtualDevice::unplug() {
    if (file_ >= 0) close(std::exchange(file_, -1)); // which destroys it
}

std::string VirtualDevice::shown() const {
    pollfd readable{file_, POLLIN, 0};
    while (poll(&readable, 1, patience) == 1) {
        input_event event{};
        while (read(file_, &event, sizeof event) == sizeof event)
            if (event.type == EV_LED) return "led " + std::to_string(event.value);
    }
    return "dark";
}

DesktopKeyboard::DesktopKeyboard(const std::string& path) : file_(openDevice(path)) {
    if (file_ < 0) throw std::runtime_error("no device at " + path);
}

DesktopKeyboard::~DesktopKeyboard() { close(file_); }

std::string DesktopKeyboard::mirrorOf(const std::string& name) {
    const int notices = inotify_init1(IN_CLOEXEC);
    inotify_add_watch(notices, "/dev/input", IN_CREATE);
    std::string found;
    while (found.empty()) {
        for (const auto& entry : std::filesystem::directory_iterator("/dev/input")) {
            const int file = openDevice(entry.path());
            if (file < 0) continue;
            if (textOf(file, EVIOCGPHYS(80)) == "hopsel/mirror" && textOf(file, EVIOCGNAME(80)) == name)
                found = entry.path();
            close(file);
        }
        pollfd readable{notices, POLLIN, 0};
        if (found.empty() && poll(&readable, 1, patience) != 1) break;
        std::array<char, 4096> drained{};
        if (found.empty() && read(notices, drained.data(), drained.size()) < 0) break;
    }
    close(notices);
    return found;
}

bool DesktopKeyboard::waitForMore() {
    pollfd readable{file_, POLLIN, 0};
    return poll(&readable, 1, patience) == 1;
}

std::vector<std::string> DesktopKeyboard::arrived() {
    std::vector<std::string> words = std::exchange(words_, {});
    input_event event{};
    ssize_t size = 0;
    while ((size = read(file_, &event, sizeof event)) == sizeof event) {
        if (event.type == EV_KEY)
            words.push_back(key_words::of(DeviceEvent{event.type, event.code, event.value}));
        if (event.type == EV_SYN && event.code == SYN_DROPPED) words.emplace_back("dropped");
    }
    if (size < 0 && errno == ENODEV) words.emplace_back("gone");
    return words;
}

std::string DesktopKeyboard::until(std::string_view wanted) {
    std::string text;
    while (true) {
        std::vector<std::string> words = arrived();
        for (auto word = words.begin(); word != words.end(); ++word) {
            text += (text.empty() ? "" : " ") + *word;
            if (*word != wanted && *word != "gone") continue;
            words_.assign(word + 1, words.end());
            return text;
        }
        if (!waitForMore()) return text + " [nothing more comes]";
    }
}

std::string DesktopKeyboard::down() const {
    std::array<std::uint8_t, KEY_CNT / 8> keys{};
    ioctl(file_, EVIOCGKEY(sizeof keys), keys.data());
    std::string names;
    for (std::uint16_t code = 0; code < KEY_CNT; ++code)
        if ((unsigned{keys.at(code / 8)} >> code % 8 & 1U) != 0)
            names += (names.empty() ? "" : " ") + key_words::nameOf(code);
    return names;
}

void DesktopKeyboard::switchCapsLight() const {
    std::array<input_event, 2> events{};
    events[0].type = EV_LED;
    events[0].code = LED_CAPSL;
    events[0].value = 1;
    if (write(file_, events.data(), sizeof events) < 0) throw std::runtime_error("no light");
}

} // namespace hopsel
