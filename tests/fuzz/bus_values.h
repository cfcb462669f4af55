// Values for a message of the bus, made of the fuzzer's bytes: of any signature, as the bus writes them.
//
// A bus hands on only what is well formed, so this is: whatever the bytes are, they become a valid message,
// and of those the readers must take all. Used by one run of the target.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace hopsel::fuzz {

class BusValues {
  public:
    explicit BusValues(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    /// Zero once the bytes are used up.
    std::uint8_t next();
    /// One of those that our readers know, or near one.
    std::string_view signature();
    /// Appends values of the signature.
    void write(std::string_view signature);
    const std::string& written() const { return written_; }

  private:
    void writeOne(std::string_view type);
    void writeArray(std::string_view element);
    void writeVariant();
    void writeText(std::string_view text);
    std::string text();
    void align(std::size_t boundary);
    void number(std::uint64_t value, std::size_t size);
    std::uint64_t number(std::size_t size);

    std::span<const std::uint8_t> bytes_;
    std::string written_;
    int depth_ = 0;
};

/// The bytes of a reply to the call of this number, or with a name of an error to it.
std::string busReply(std::uint32_t call, std::string_view signature, const std::string& values,
                     std::string_view error);

} // namespace hopsel::fuzz
