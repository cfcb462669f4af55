#include "platform/macos/base/main_loop.h"

#include "platform/macos/base/autorelease_pool.h"
#include "platform/macos/base/cf_ref.h"

#include <algorithm>
#include <deque>
#include <mach/mach_time.h>

namespace hopsel {

namespace {

/// A loop source of our own. The main dispatch queue would not do: it does not come to what was added next
/// while it runs a function that runs the loop.
class Scheduler {
  public:
    Scheduler() {
        CFRunLoopSourceContext context{};
        context.info = this;
        context.perform = [](void* self) { static_cast<Scheduler*>(self)->runFirst(); };
        source_ = CfRef<CFRunLoopSourceRef>::adopt(CFRunLoopSourceCreate(kCFAllocatorDefault, 0, &context));
        CFRunLoopAddSource(CFRunLoopGetMain(), source_.get(), kCFRunLoopCommonModes);
    }

    ~Scheduler() { CFRunLoopSourceInvalidate(source_.get()); }
    Scheduler(const Scheduler&) = delete;
    Scheduler& operator=(const Scheduler&) = delete;

    void add(std::function<void()> function) {
        functions_.push_back(std::move(function));
        signal();
    }

  private:
    void signal() {
        CFRunLoopSourceSignal(source_.get());
        CFRunLoopWakeUp(CFRunLoopGetMain());
    }

    void runFirst() {
        if (functions_.empty()) return;
        const AutoreleasePool pool;
        const auto function = std::move(functions_.front());
        functions_.pop_front();
        if (!functions_.empty()) signal(); // before the function, which may run the loop
        function();
    }

    CfRef<CFRunLoopSourceRef> source_;
    std::deque<std::function<void()>> functions_;
};

Scheduler& scheduler() {
    static Scheduler instance;
    return instance;
}

} // namespace

double uptimeSeconds() {
    static const double secondsPerTick = [] {
        mach_timebase_info_data_t base{};
        mach_timebase_info(&base);
        return static_cast<double>(base.numer) / static_cast<double>(base.denom) / 1e9;
    }();
    return static_cast<double>(mach_absolute_time()) * secondsPerTick;
}

void schedule(std::function<void()> function) { scheduler().add(std::move(function)); }

void runFor(double seconds) {
    scheduler(); // a loop without a source returns at once, and whoever waits would spin
    CFRunLoopRunInMode(kCFRunLoopDefaultMode, std::max(seconds, 0.0), 1);
}

void waitFor(double seconds) {
    const double end = uptimeSeconds() + seconds;
    while (uptimeSeconds() < end) runFor(end - uptimeSeconds());
}

} // namespace hopsel
