#include "support/macos/fakes/objects.h"

#include "support/macos/fakes/world.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <map>

using hopsel::macos_fakes::Kind;
using hopsel::macos_fakes::Object;

namespace hopsel::macos_fakes {

namespace {

long liveCount = 0;

/// Units of UTF-16, or -1 for what is no UTF-8.
CFIndex unitsIn(const std::string& utf8) {
    CFIndex units = 0;
    for (std::size_t at = 0; at < utf8.size();) {
        const int ones = std::countl_one(static_cast<unsigned char>(utf8[at]));
        const auto length = static_cast<std::size_t>(std::max(ones, 1));
        if (ones == 1 || ones > 4 || at + length > utf8.size()) return -1;
        for (std::size_t rest = 1; rest < length; ++rest) {
            if ((static_cast<unsigned char>(utf8[at + rest]) & 0xC0) != 0x80) return -1;
        }
        units += length == 4 ? 2 : 1;
        at += length;
    }
    return units;
}

std::size_t pools = 0;

} // namespace

std::size_t openPools() { return pools; }

Object::Object(Kind ofKind, bool isLasting) : kind(ofKind), isConstant(isLasting) {
    if (!isConstant) ++liveCount;
}

Object::~Object() {
    if (!isConstant) --liveCount;
}

Object& object(CFTypeRef reference) {
    if (reference == nullptr) std::abort();
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
    explicit HopselCFNumber(double number) : Object(Kind::number), value(number) {}
    const double value;
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

// Of any number only what a double holds is asked for.
CFNumberRef CFNumberCreate(CFAllocatorRef, CFNumberType type, const void* value) {
    if (type != kCFNumberDoubleType) std::abort();
    return new HopselCFNumber(*static_cast<const double*>(value));
}

Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value) {
    if (type != kCFNumberDoubleType) std::abort();
    *static_cast<double*>(value) = number->value;
    return 1;
}

// In no header of the system: what compilers call.
// NOLINTBEGIN(readability-identifier-naming)
extern "C" {
void* objc_autoreleasePoolPush();
void objc_autoreleasePoolPop(void* pool);
}

void* objc_autoreleasePoolPush() { return &++hopsel::macos_fakes::pools; }
void objc_autoreleasePoolPop(void*) { --hopsel::macos_fakes::pools; }
// NOLINTEND(readability-identifier-naming)
