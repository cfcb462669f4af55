// Numbers in and out of a packet, least significant byte first. A reader that runs over the end, or meets a
// value out of its bounds, stays failed; who reads looks once, at the end.
//
// Both live for one packet, whose bytes the reader does not own.
#pragma once

#include <concepts>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace hopsel {

class PacketWriter {
  public:
    explicit PacketWriter(std::uint8_t type) : bytes_{type} {}

    template <std::unsigned_integral Number>
    void put(Number value) {
        for (std::size_t byte = 0; byte < sizeof(Number); ++byte)
            bytes_.push_back(static_cast<std::uint8_t>(value >> (8 * byte)));
    }
    void put(bool value) { bytes_.push_back(value ? 1 : 0); }
    template <class Enumeration>
        requires std::is_enum_v<Enumeration>
    void put(Enumeration value) {
        bytes_.push_back(static_cast<std::uint8_t>(value));
    }
    void put(std::string_view text) { bytes_.insert(bytes_.end(), text.begin(), text.end()); }

    std::vector<std::uint8_t> take() { return std::move(bytes_); }

  private:
    std::vector<std::uint8_t> bytes_;
};

class PacketReader {
  public:
    explicit PacketReader(std::span<const std::uint8_t> packet) : rest_(packet) {}

    template <std::unsigned_integral Number>
    Number number() {
        Number value = 0;
        if (rest_.size() < sizeof(Number)) return fail(value);
        for (std::size_t byte = 0; byte < sizeof(Number); ++byte)
            value = static_cast<Number>(value | static_cast<Number>(Number{rest_[byte]} << (8 * byte)));
        rest_ = rest_.subspan(sizeof(Number));
        return value;
    }
    /// At most `last`.
    template <std::unsigned_integral Number>
    Number numberUpTo(Number last) {
        const auto value = number<Number>();
        return value <= last ? value : fail(Number{0});
    }
    bool boolean() { return numberUpTo<std::uint8_t>(1) == 1; }
    template <class Enumeration>
    Enumeration enumeration(Enumeration last) {
        return static_cast<Enumeration>(numberUpTo(static_cast<std::uint8_t>(last)));
    }
    /// All that is left, if it is not longer.
    std::string text(std::size_t maxLength) {
        if (rest_.size() > maxLength) return fail(std::string{});
        std::string text(rest_.begin(), rest_.end());
        rest_ = {};
        return text;
    }

    /// For what the caller finds wrong.
    void reject() { fail(0); }

    /// Whether everything was read, and nothing was wrong.
    bool isWhole() const { return !hasFailed_ && rest_.empty(); }

  private:
    template <class Value>
    Value fail(Value instead) {
        hasFailed_ = true;
        rest_ = {};
        return instead;
    }

    std::span<const std::uint8_t> rest_;
    bool hasFailed_ = false;
};

} // namespace hopsel
