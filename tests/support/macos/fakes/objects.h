// The objects behind the faked references: reference-counted, counted while they live, never freed twice
// without the sanitizer saying so.
#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace hopsel::macos_fakes {

enum class Kind : CFTypeID {
    string = 1,
    boolean,
    number,
    array,
    dictionary,
    loop,
    source,
    port,
    center,
    event,
    eventSource,
    inputSource,
};

class Object {
  public:
    /// Constants are never freed and never counted.
    explicit Object(Kind kind, bool isConstant = false);
    virtual ~Object();
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    virtual bool equals(const Object& other) const { return this == &other; }

    const Kind kind;
    const bool isConstant;
    CFIndex retains = 1;
};

/// Stops the test program for nothing, as the system would.
Object& object(CFTypeRef reference);

/// A retained reference, for objects that hold others.
class Held {
  public:
    explicit Held(CFTypeRef reference) : reference_(reference != nullptr ? CFRetain(reference) : nullptr) {}
    Held(const Held& other) : Held(other.reference_) {}
    Held(Held&& other) noexcept : reference_(std::exchange(other.reference_, nullptr)) {}
    Held& operator=(Held other) noexcept {
        std::swap(reference_, other.reference_);
        return *this;
    }
    ~Held() {
        if (reference_ != nullptr) CFRelease(reference_);
    }
    CFTypeRef get() const { return reference_; }

  private:
    CFTypeRef reference_;
};

/// The text of a string.
std::string text(CFStringRef string);

} // namespace hopsel::macos_fakes

struct HopselCFString final : hopsel::macos_fakes::Object {
    HopselCFString(std::string bytes, bool isLasting)
        : Object(hopsel::macos_fakes::Kind::string, isLasting), utf8(std::move(bytes)) {}
    bool equals(const Object& other) const override;
    const std::string utf8;
};

struct HopselCFArray final : hopsel::macos_fakes::Object {
    HopselCFArray() : Object(hopsel::macos_fakes::Kind::array) {}
    std::vector<hopsel::macos_fakes::Held> values;
};

struct HopselCFDictionary final : hopsel::macos_fakes::Object {
    HopselCFDictionary() : Object(hopsel::macos_fakes::Kind::dictionary) {}
    std::vector<std::pair<hopsel::macos_fakes::Held, hopsel::macos_fakes::Held>> entries;
};

struct HopselCFRunLoopSource final : hopsel::macos_fakes::Object {
    HopselCFRunLoopSource() : Object(hopsel::macos_fakes::Kind::source) {}
    CFRunLoopSourceContext context{};
    bool isSignalled = false;
};

struct HopselCFMachPort final : hopsel::macos_fakes::Object {
    HopselCFMachPort() : Object(hopsel::macos_fakes::Kind::port) {}
    ~HopselCFMachPort() override {
        if (onGone) onGone();
    }
    bool isValid = true;
    CFRunLoopSourceRef source = nullptr; ///< the last one made for it, not held
    std::function<void()> onGone;
};
