// Ownership of one file descriptor. Move-only; closes on destruction.
#pragma once

#include <unistd.h>
#include <utility>

namespace hopsel::session {

class FileDescriptor {
  public:
    FileDescriptor() = default;
    explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
    ~FileDescriptor() { reset(); }
    FileDescriptor(FileDescriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        if (this != &other) {
            reset();
            descriptor_ = std::exchange(other.descriptor_, -1);
        }
        return *this;
    }

    int get() const { return descriptor_; }
    bool isOpen() const { return descriptor_ >= 0; }
    void reset() {
        if (descriptor_ >= 0) close(std::exchange(descriptor_, -1));
    }

  private:
    int descriptor_ = -1;
};

} // namespace hopsel::session
