#include "bus_values.h"

#include <algorithm>
#include <array>

namespace hopsel::fuzz {

namespace {

constexpr std::string_view engine = "(sa{sv}ssssssssusssssss)";
constexpr std::array<std::string_view, 26> signatures{"s",
                                                      "i",
                                                      "u",
                                                      "b",
                                                      "o",
                                                      "v",
                                                      "as",
                                                      "au",
                                                      "av",
                                                      "a{sv}",
                                                      "sa(ss)",
                                                      "a(ssssssb)",
                                                      "a(sss)",
                                                      engine,
                                                      "(sa{sv}ssssssssusssssssss)",
                                                      "(sa{sv}s)",
                                                      "sa{sb}a(ssss)s",
                                                      "sii",
                                                      "(so)",
                                                      "ay",
                                                      "x",
                                                      "d",
                                                      "g",
                                                      "aau",
                                                      "a(vv)",
                                                      "a{uv}"};

/// What readers look for, and letters that text may not be shown with.
constexpr std::array<std::string_view, 16> words{"",
                                                 "hangul",
                                                 "xkb:us::eng",
                                                 "us",
                                                 "us(dvorak)",
                                                 "default",
                                                 "*",
                                                 "ko_KR",
                                                 "keyboard-us",
                                                 "kr(kr104)",
                                                 "IBusEngineDesc",
                                                 "../..",
                                                 "\xE2\x80\xAE",
                                                 "\xF0\x9F\x98\x80",
                                                 "\xC2\x85",
                                                 "\xE2\x80\xA8\xEF\xBF\xBD"};

constexpr int deepest = 12;
constexpr std::uint8_t mostElements = 12;
constexpr std::size_t longText = 100'000;

std::size_t alignmentOf(char type) {
    switch (type) {
    case 'y':
    case 'g':
    case 'v': return 1;
    case 'n':
    case 'q': return 2;
    case 'x':
    case 't':
    case 'd':
    case '(':
    case '{': return 8;
    default: return 4;
    }
}

/// The length of the first complete type.
std::size_t lengthOfOne(std::string_view signature) {
    std::size_t at = 0;
    while (signature[at] == 'a') ++at;
    int open = 0;
    do {
        if (signature[at] == '(' || signature[at] == '{') ++open;
        if (signature[at] == ')' || signature[at] == '}') --open;
        ++at;
    } while (open > 0);
    return at;
}

} // namespace

std::uint8_t BusValues::next() {
    if (bytes_.empty()) return 0;
    const std::uint8_t first = bytes_.front();
    bytes_ = bytes_.subspan(1);
    return first;
}

std::string_view BusValues::signature() { return signatures[next() % signatures.size()]; }

void BusValues::write(std::string_view signature) {
    while (!signature.empty()) {
        const std::size_t length = lengthOfOne(signature);
        writeOne(signature.substr(0, length));
        signature.remove_prefix(length);
    }
}

void BusValues::writeOne(std::string_view type) {
    align(alignmentOf(type.front()));
    switch (type.front()) {
    case 'y': return number(next(), 1);
    case 'b': return number(next() & 1U, 4);
    case 'n':
    case 'q': return number(number(2), 2);
    case 'x':
    case 't':
    case 'd': return number(number(8), 8);
    case 's': return writeText(text());
    case 'o': return writeText(next() % 2 == 0 ? "/" : "/org/example/_1");
    case 'g':
        number(1, 1);
        written_ += next() % 2 == 0 ? 's' : 'v';
        return number(0, 1);
    case 'v': return writeVariant();
    case 'a': return writeArray(type.substr(1));
    case '(':
    case '{': return write(type.substr(1, type.size() - 2));
    default: return number(number(4), 4);
    }
}

void BusValues::writeArray(std::string_view element) {
    const std::size_t lengthAt = written_.size();
    number(0, 4);
    align(alignmentOf(element.front()));
    const std::size_t start = written_.size();
    ++depth_;
    const int count = depth_ > deepest ? 0 : next() % mostElements;
    for (int i = 0; i < count; ++i) writeOne(element);
    --depth_;
    const std::size_t length = written_.size() - start;
    for (std::size_t i = 0; i < 4; ++i) written_[lengthAt + i] = static_cast<char>(length >> 8 * i & 0xFF);
}

void BusValues::writeVariant() {
    std::string_view type = depth_ > deepest ? "u" : signature();
    type = type.substr(0, lengthOfOne(type));
    number(type.size(), 1);
    written_ += type;
    number(0, 1);
    ++depth_;
    writeOne(type);
    --depth_;
}

void BusValues::writeText(std::string_view text) {
    number(text.size(), 4);
    written_ += text;
    number(0, 1);
}

std::string BusValues::text() {
    const std::uint8_t kind = next();
    if (kind < words.size()) return std::string(words[kind]);
    if (kind == 0xFF) return std::string(longText, 'x');
    std::string text;
    for (int left = kind % 64; left > 0; --left) {
        const std::uint8_t byte = next();
        if (byte >= 0x80)
            text += words[byte % words.size()];
        else if (byte != 0)
            text += static_cast<char>(byte);
    }
    return text;
}

void BusValues::align(std::size_t boundary) {
    written_.resize((written_.size() + boundary - 1) / boundary * boundary);
}

void BusValues::number(std::uint64_t value, std::size_t size) {
    for (; size > 0; --size, value >>= 8) written_ += static_cast<char>(value & 0xFF);
}

std::uint64_t BusValues::number(std::size_t size) {
    std::uint64_t value = 0;
    for (; size > 0; --size) value = value << 8 | next();
    return value;
}

std::string busReply(std::uint32_t call, std::string_view signature, const std::string& values,
                     std::string_view error) {
    const auto word = [](std::size_t value) {
        std::string bytes;
        for (std::size_t i = 0; i < 4; ++i) bytes += static_cast<char>(value >> 8 * i & 0xFF);
        return bytes;
    };
    const auto pad = [](std::string& bytes) { bytes.resize((bytes.size() + 7) / 8 * 8); };
    using namespace std::string_literals;
    std::string fields = "\5\1u\0"s + word(call);
    if (!signature.empty())
        fields += "\10\1g\0"s + static_cast<char>(signature.size()) + std::string(signature) + '\0';
    if (!error.empty()) {
        pad(fields);
        fields += "\4\1s\0"s + word(error.size()) + std::string(error) + '\0';
    }
    std::string message = "l"s + (error.empty() ? '\2' : '\3') + "\1\1"s + word(values.size()) + word(1) +
                          word(fields.size()) + fields;
    pad(message);
    return message + values;
}

} // namespace hopsel::fuzz
