// The fingers and the desktop of the test: a keyboard that is plugged in, and whoever listens to keyboards.
//
// Each belongs to a test. Both speak the words of `key_words`.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace hopsel {

/// A device that the kernel cannot tell from one with a plug.
class VirtualDevice {
  public:
    enum class Kind : std::uint8_t { keyboard, mouse };
    explicit VirtualDevice(const std::string& name, Kind kind = Kind::keyboard);
    ~VirtualDevice() { unplug(); }
    VirtualDevice(const VirtualDevice&) = delete;
    VirtualDevice& operator=(const VirtualDevice&) = delete;

    void type(std::string_view words) const;
    void key(std::uint16_t linuxCode, int value) const;
    void turnWheel() const;
    void unplug();
    /// The next light that is switched, as "led 1".
    std::string shown() const;
    const std::string& path() const { return path_; }

  private:
    void write(std::uint16_t type, std::uint16_t code, int value) const;

    int file_ = -1;
    std::string path_;
};

/// Reads one keyboard, as a desktop does. It has opened it when the constructor returns.
class DesktopKeyboard {
  public:
    explicit DesktopKeyboard(const std::string& path);
    ~DesktopKeyboard();
    DesktopKeyboard(const DesktopKeyboard&) = delete;
    DesktopKeyboard& operator=(const DesktopKeyboard&) = delete;

    /// The path of the mirror of a device, once there is one.
    static std::string mirrorOf(const std::string& name);

    /// All that comes until this word, which is part of it. "gone" is one too.
    std::string until(std::string_view word);
    /// All that has come by now.
    std::vector<std::string> arrived();
    /// What is down, as the kernel says.
    std::string down() const;
    void switchCapsLight() const;

  private:
    bool waitForMore();

    int file_ = -1;
    std::vector<std::string> words_;
};

} // namespace hopsel
