#include "support/macos/fakes/objects.h"

#include "support/macos/fakes/world.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>

using hopsel::macos_fakes::Kind;
using hopsel::macos_fakes::Object;

namespace hopsel::macos_fakes {

namespace {

long liveCount = 0;

/// Units of UTF-16, or -1 for what is no UTF-8.
CFIndex unitsIn(const std::string& utf8) {
    CFIndex units = 0;
    for (std::size_t at = 0; at < utf8.size();) {
        const auto first = static_cast<unsigned char>(utf8[at]);
        const std::size_t length = first < 0x80   ? 1
                                   : first < 0xC2 ? 0
                                   : first < 0xE0 ? 2
                                   : first < 0xF0 ? 3
                                                  : 4;
        if (length == 0 || first > 0xF4 || at + length > utf8.size()) return -1;
        for (std::size_t rest = 1; rest < length; ++rest) {
            if ((static_cast<unsigned char>(utf8[at + rest]) & 0xC0) != 0x80) return -1;
        }
        units += length == 4 ? 2 : 1;
        at += length;
    }
    return units;
}

std::vector<std::unique_ptr<int>> pools;

} // namespace

std::size_t openPools() { return pools.size(); }

Object::Object(Kind ofKind, bool isLasting) : kind(ofKind), isConstant(isLasting) {
    if (!isConstant) ++liveCount;
}

Object::~Object() {
    if (!isConstant) --liveCount;
}

Object& object(CFTypeRef reference) {
    if (reference == nullptr) {
        std::fputs("a function that needs an object was given none\n", stderr);
        std::abort();
    }
    return *static_cast<Object*>(const_cast<void*>(reference));
}

std::string text(CFStringRef string) { return string->utf8; }

long liveObjects() { return liveCount; }

} // namespace hopsel::macos_fakes

bool HopselCFString::equals(const Object& other) const {
    return other.kind == Kind::string && static_cast<const HopselCFString&>(other).utf8 == utf8;
}

struct HopselCFBoolean final : Object {
    explicit HopselCFBoolean(bool isTrue) : Object(Kind::boolean, true), value(isTrue) {}
    const bool value;
};

struct HopselCFNumber final : Object {
    HopselCFNumber(double number, bool isFloating)
        : Object(Kind::number), value(number), isFloat(isFloating) {}
    bool equals(const Object& other) const override {
        return other.kind == Kind::number && static_cast<const HopselCFNumber&>(other).value == value;
    }
    const double value;
    const bool isFloat;
};

const CFAllocatorRef kCFAllocatorDefault = nullptr;

CFTypeRef CFRetain(CFTypeRef reference) {
    Object& held = hopsel::macos_fakes::object(reference);
    if (!held.isConstant) ++held.retains;
    return reference;
}

void CFRelease(CFTypeRef reference) {
    Object& held = hopsel::macos_fakes::object(reference);
    if (!held.isConstant && --held.retains == 0) delete &held;
}

CFIndex CFGetRetainCount(CFTypeRef reference) { return hopsel::macos_fakes::object(reference).retains; }
CFTypeID CFGetTypeID(CFTypeRef reference) {
    return static_cast<CFTypeID>(hopsel::macos_fakes::object(reference).kind);
}
Boolean CFEqual(CFTypeRef one, CFTypeRef other) {
    return hopsel::macos_fakes::object(one).equals(hopsel::macos_fakes::object(other)) ? 1 : 0;
}

CFTypeID CFStringGetTypeID() { return static_cast<CFTypeID>(Kind::string); }

CFStringRef CFStringCreateWithBytes(CFAllocatorRef, const UInt8* bytes, CFIndex count, CFStringEncoding,
                                    Boolean) {
    std::string utf8(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(count));
    return hopsel::macos_fakes::unitsIn(utf8) < 0 ? nullptr : new HopselCFString(std::move(utf8), false);
}

CFStringRef CFStringCreateWithCString(CFAllocatorRef allocator, const char* text, CFStringEncoding encoding) {
    return CFStringCreateWithBytes(allocator, reinterpret_cast<const UInt8*>(text),
                                   static_cast<CFIndex>(std::strlen(text)), encoding, 0);
}

CFIndex CFStringGetLength(CFStringRef string) { return hopsel::macos_fakes::unitsIn(string->utf8); }

CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding, UInt8, Boolean, UInt8* buffer,
                         CFIndex size, CFIndex* used) {
    const auto needed = static_cast<CFIndex>(string->utf8.size());
    if (range.location != 0 || range.length != CFStringGetLength(string)) std::abort(); // whole strings only
    if (buffer != nullptr && size < needed) return 0;
    if (buffer != nullptr) string->utf8.copy(reinterpret_cast<char*>(buffer), string->utf8.size());
    if (used != nullptr) *used = needed;
    return range.length;
}

Boolean CFStringGetCString(CFStringRef string, char* buffer, CFIndex size, CFStringEncoding) {
    if (size <= static_cast<CFIndex>(string->utf8.size())) return 0;
    string->utf8.copy(buffer, string->utf8.size());
    buffer[string->utf8.size()] = '\0';
    return 1;
}

CFStringRef hopselConstantString(const char* text) {
    static std::map<std::string, HopselCFString> constants;
    return &constants.try_emplace(text, text, true).first->second;
}

namespace {
const HopselCFBoolean booleanTrue(true);
const HopselCFBoolean booleanFalse(false);
} // namespace
const CFBooleanRef kCFBooleanTrue = &booleanTrue;
const CFBooleanRef kCFBooleanFalse = &booleanFalse;
CFTypeID CFBooleanGetTypeID() { return static_cast<CFTypeID>(Kind::boolean); }
Boolean CFBooleanGetValue(CFBooleanRef boolean) { return boolean->value ? 1 : 0; }

CFTypeID CFNumberGetTypeID() { return static_cast<CFTypeID>(Kind::number); }

CFNumberRef CFNumberCreate(CFAllocatorRef, CFNumberType type, const void* value) {
    switch (type) {
    case kCFNumberSInt32Type:
    case kCFNumberIntType: return new HopselCFNumber(*static_cast<const std::int32_t*>(value), false);
    case kCFNumberSInt64Type:
    case kCFNumberLongLongType:
        return new HopselCFNumber(static_cast<double>(*static_cast<const std::int64_t*>(value)), false);
    case kCFNumberFloat64Type:
    case kCFNumberDoubleType: return new HopselCFNumber(*static_cast<const double*>(value), true);
    }
    std::abort();
}

Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value) {
    if (type == kCFNumberFloat64Type || type == kCFNumberDoubleType) {
        *static_cast<double*>(value) = number->value;
        return 1;
    }
    if (type == kCFNumberSInt32Type || type == kCFNumberIntType) {
        if (number->value < -2147483648.0 || number->value > 2147483647.0) return 0;
        *static_cast<std::int32_t*>(value) = static_cast<std::int32_t>(number->value);
        return static_cast<double>(*static_cast<std::int32_t*>(value)) == number->value ? 1 : 0;
    }
    if (!(number->value >= -9.2e18 && number->value <= 9.2e18)) return 0;
    *static_cast<std::int64_t*>(value) = static_cast<std::int64_t>(number->value);
    return static_cast<double>(*static_cast<std::int64_t*>(value)) == number->value ? 1 : 0;
}

Boolean CFNumberIsFloatType(CFNumberRef number) { return number->isFloat ? 1 : 0; }

// In no header of the system: what compilers call.
// NOLINTBEGIN(readability-identifier-naming)
extern "C" {
void* objc_autoreleasePoolPush();
void objc_autoreleasePoolPop(void* pool);
}

void* objc_autoreleasePoolPush() {
    return hopsel::macos_fakes::pools.emplace_back(std::make_unique<int>()).get();
}

void objc_autoreleasePoolPop(void* pool) {
    // As deep as the stack: whoever empties one is the last who opened one.
    using hopsel::macos_fakes::pools;
    if (pools.empty() || pools.back().get() != pool) std::abort();
    pools.pop_back();
}
// NOLINTEND(readability-identifier-naming)
