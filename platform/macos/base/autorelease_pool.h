// Frees what the system's functions autorelease while we handle something that is no event of the
// application.
//
// The application empties its own pool after each of its events, and a program without a window in front may
// not get one for hours, while taps, notifications and the loop call it all day. A local variable of such a
// callback. The two functions are what compilers make of the statement for it in Objective-C; the run-time
// support section of Clang's description of ARC names them.
#pragma once

// The names are the run time's.
// NOLINTBEGIN(readability-identifier-naming)
extern "C" {
void* objc_autoreleasePoolPush();
void objc_autoreleasePoolPop(void* pool);
}
// NOLINTEND(readability-identifier-naming)

namespace hopsel {

class AutoreleasePool {
  public:
    AutoreleasePool() : pool_(objc_autoreleasePoolPush()) {}
    ~AutoreleasePool() { objc_autoreleasePoolPop(pool_); }
    AutoreleasePool(const AutoreleasePool&) = delete;
    AutoreleasePool& operator=(const AutoreleasePool&) = delete;

  private:
    void* pool_;
};

} // namespace hopsel
