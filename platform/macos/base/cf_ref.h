// One reference to a Core Foundation object, released with its holder.
//
// Functions with Create or Copy in their name hand out a reference that the caller owns: `adopt` it. All
// others lend one that may end with whoever lent it: `retain` it to keep it.
#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <utility>

namespace hopsel {

template <typename Ref>
class CfRef {
  public:
    CfRef() = default;
    static CfRef adopt(Ref object) { return CfRef(object); }
    static CfRef retain(Ref object) {
        if (object != nullptr) CFRetain(object);
        return CfRef(object);
    }

    CfRef(CfRef&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    CfRef& operator=(CfRef&& other) noexcept {
        CfRef(std::move(other)).swap(*this);
        return *this;
    }
    ~CfRef() {
        if (object_ != nullptr) CFRelease(object_);
    }

    Ref get() const { return object_; }
    explicit operator bool() const { return object_ != nullptr; }

  private:
    explicit CfRef(Ref object) : object_(object) {}
    void swap(CfRef& other) noexcept { std::swap(object_, other.object_); }

    Ref object_ = nullptr;
};

} // namespace hopsel
