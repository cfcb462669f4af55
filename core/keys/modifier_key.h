// The eight side-specific modifier keys, and the flag word in which a keyboard event says which of them are
// held.
//
// Key codes are macOS virtual key codes and flag words are laid out as CGEventGetFlags returns them, on every
// platform: a settings file written on one system works on the other. Sources on other systems translate.
// Plain values without a lifetime of their own.
#pragma once

#include <array>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace hopsel {

enum class ModifierKey : std::uint8_t {
    leftCommand,
    rightCommand,
    leftOption,
    rightOption,
    leftShift,
    rightShift,
    leftControl,
    rightControl,
};

enum class ModifierFamily : std::uint8_t { command, option, shift, control };

inline constexpr std::array<ModifierKey, 8> allModifierKeys{
    ModifierKey::leftCommand, ModifierKey::rightCommand, ModifierKey::leftOption,  ModifierKey::rightOption,
    ModifierKey::leftShift,   ModifierKey::rightShift,   ModifierKey::leftControl, ModifierKey::rightControl,
};

/// The virtual key code of Caps Lock, which changes flags but is none of the eight modifier keys.
inline constexpr std::uint16_t capsLockKeyCode = 57;
/// The flag bit that says that Caps Lock is on.
inline constexpr std::uint64_t capsLockFlag = 0x10000;

/// The persistent name, as the settings file spells it: "leftCommand" and so on.
std::string_view rawValue(ModifierKey key);
/// The virtual key code of the key.
std::uint16_t keyCode(ModifierKey key);
ModifierFamily family(ModifierKey key);
/// The flag bit of this very key (left and right differ). Some keyboards never set it.
std::uint64_t deviceMask(ModifierKey key);
/// The flag bit that says that some key of the family is down.
std::uint64_t flagMask(ModifierFamily family);

/// Exact and case-sensitive; anything but the eight names gives no key.
std::optional<ModifierKey> modifierKeyFromRawValue(std::string_view name);
/// Caps Lock, Fn and every ordinary key give no key.
std::optional<ModifierKey> modifierKeyFromKeyCode(std::uint16_t code);

/// A set of modifier keys: eight bits, no allocation, iterated in the order of `allModifierKeys`.
class ModifierSet {
  public:
    constexpr ModifierSet() = default;
    constexpr ModifierSet(std::initializer_list<ModifierKey> keys) {
        for (ModifierKey key : keys) insert(key);
    }

    constexpr bool contains(ModifierKey key) const { return (bits_ & bit(key)) != 0; }
    constexpr bool empty() const { return bits_ == 0; }
    constexpr void insert(ModifierKey key) { bits_ = static_cast<std::uint8_t>(bits_ | bit(key)); }
    constexpr void remove(ModifierKey key) { bits_ = static_cast<std::uint8_t>(bits_ & ~bit(key)); }
    constexpr void clear() { bits_ = 0; }
    /// One bit a key, in declaration order; usable as a hash.
    constexpr std::uint8_t bits() const { return bits_; }

    class Iterator {
      public:
        constexpr explicit Iterator(unsigned rest) : rest_(rest) {}
        constexpr ModifierKey operator*() const { return static_cast<ModifierKey>(__builtin_ctz(rest_)); }
        constexpr Iterator& operator++() {
            rest_ &= rest_ - 1;
            return *this;
        }
        friend constexpr bool operator==(Iterator, Iterator) = default;

      private:
        unsigned rest_;
    };
    constexpr Iterator begin() const { return Iterator(bits_); }
    constexpr Iterator end() const { return Iterator(0); }

    friend constexpr bool operator==(ModifierSet, ModifierSet) = default;

  private:
    static constexpr std::uint8_t bit(ModifierKey key) {
        return static_cast<std::uint8_t>(1U << static_cast<unsigned>(key));
    }
    std::uint8_t bits_ = 0;
};

/// Every key whose family bit and own bit are both set. Sides are never guessed: flags without device bits
/// give the empty set.
ModifierSet heldModifiers(std::uint64_t flags);

/// The flag word of exactly these keys held: their family bits and their own bits.
std::uint64_t flagsOf(ModifierSet keys);

/// In ascending order of the persistent names, the order in which texts and files list them and in which the
/// guest key presses them.
std::vector<ModifierKey> sortedByName(ModifierSet keys);
/// The names in that order.
std::vector<std::string> sortedNames(ModifierSet keys);

} // namespace hopsel
