// A flag that is up for as long as a block runs, however the block is left. Lives on the stack of that block.
#pragma once

namespace hopsel {

class WhileTrue {
  public:
    explicit WhileTrue(bool& flag) : flag_(flag) { flag_ = true; }
    ~WhileTrue() { flag_ = false; }
    WhileTrue(const WhileTrue&) = delete;
    WhileTrue& operator=(const WhileTrue&) = delete;

  private:
    bool& flag_;
};

} // namespace hopsel
