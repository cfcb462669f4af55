// Calls once, on a later turn of the loop, however often it was asked for until then.
//
// A member of whoever is called; the call stops with it.
#pragma once

#include "platform/macos/base/main_loop.h"

#include <functional>
#include <memory>
#include <utility>

namespace hopsel {

class CoalescedCall {
  public:
    explicit CoalescedCall(std::function<void()> call)
        : state_(std::make_shared<State>(State{std::move(call)})) {}

    void request() {
        if (std::exchange(state_->isPending, true)) return;
        schedule([weak = std::weak_ptr(state_)] {
            const auto state = weak.lock();
            if (!state) return;
            state->isPending = false;
            state->call();
        });
    }

  private:
    struct State {
        std::function<void()> call;
        bool isPending = false;
    };
    std::shared_ptr<State> state_;
};

} // namespace hopsel
