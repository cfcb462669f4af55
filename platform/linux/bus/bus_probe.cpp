#include "platform/linux/bus/bus_probe.h"

#include "platform/linux/bus/bus_address.h"

#include <algorithm>
#include <memory>
#include <systemd/sd-bus.h>

namespace hopsel::bus_probe {

namespace {

using Clock = std::chrono::steady_clock;

struct Closer {
    void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); } // not "flush", which would wait
    void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
using Bus = std::unique_ptr<sd_bus, Closer>;

Bus open(const QString& address) {
    sd_bus* made = nullptr;
    if (sd_bus_new(&made) < 0) return nullptr;
    Bus bus(made);
    if (sd_bus_set_address(bus.get(), address.toUtf8().constData()) < 0 ||
        sd_bus_set_bus_client(bus.get(), 1) < 0 || sd_bus_start(bus.get()) < 0)
        return nullptr;
    return bus;
}

/// Lets the bus go on until the condition holds; false if it does not in time, or the bus is gone.
template <class Condition>
bool runUntil(sd_bus* bus, Clock::time_point end, Condition condition) {
    while (!condition()) {
        const int progress = sd_bus_process(bus, nullptr);
        if (progress < 0) return false;
        if (progress > 0) continue;
        const auto left = std::chrono::duration_cast<std::chrono::microseconds>(end - Clock::now()).count();
        if (left <= 0 || sd_bus_wait(bus, static_cast<std::uint64_t>(left)) < 0) return false;
    }
    return true;
}

int noteAnswer(sd_bus_message*, void* isAnswered, sd_bus_error*) {
    *static_cast<bool*>(isAnswered) = true;
    return 0;
}

} // namespace

Answer ask(const QString& address, std::chrono::milliseconds patience, const Service* service) {
    const auto end = Clock::now() + patience;
    const QString local = bus_address::local(address);
    const Bus bus = local.isEmpty() ? nullptr : open(local);
    if (!bus || !runUntil(bus.get(), end, [&] { return sd_bus_is_ready(bus.get()) > 0; }))
        return Answer::none;
    if (service == nullptr) return Answer::all;

    constexpr const char* properties = "org.freedesktop.DBus.Properties";
    sd_bus_message* made = nullptr;
    if (sd_bus_message_new_method_call(bus.get(), &made, service->name, service->path, properties, "Get") < 0)
        return Answer::silence;
    const std::unique_ptr<sd_bus_message, Closer> call(made);
    sd_bus_message_set_auto_start(call.get(), 0);
    bool isAnswered = false;
    if (sd_bus_message_append(call.get(), "ss", service->interface, service->property) < 0 ||
        sd_bus_call_async(bus.get(), nullptr, call.get(), noteAnswer, &isAnswered, 0) < 0)
        return Answer::silence;
    return runUntil(bus.get(), end, [&] { return isAnswered; }) ? Answer::all : Answer::silence;
}

} // namespace hopsel::bus_probe
