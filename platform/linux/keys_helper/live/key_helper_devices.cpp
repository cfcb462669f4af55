// The devices' side of the helper.
#include "platform/linux/keys_helper/live/key_helper.h"

#include <algorithm>
#include <utility>

namespace hopsel {

namespace {

std::uint8_t counted(std::size_t number) {
    return static_cast<std::uint8_t>(std::min<std::size_t>(number, 255));
}

} // namespace

void KeyHelper::findDevices() {
    if (!isListening()) return;
    std::size_t unreadable = 0;
    for (const std::string& path : DeviceFolder::devices()) {
        if (devices_.contains(path)) continue;
        auto failure = InputDevice::Failure::gone;
        auto device = InputDevice::open(path, failure);
        if (!device) {
            if (failure == InputDevice::Failure::unreadable) ++unreadable;
            continue;
        }
        const KeyboardId id = ++lastId_;
        auto watched = std::make_unique<WatchedDevice>(id, std::move(device), filter_);
        watched->deviceWatch = loop_.whenReadable(watched->descriptor(), [this, path] {
            if (!devices_.at(path)->read()) {
                drop(path);
                findDevices(); // the next one may have its name already
            }
            settle();
        });
        byId_[id] = watched.get();
        devices_[path] = std::move(watched);
    }
    unreadable_ = counted(unreadable);
}

void KeyHelper::drop(const std::string& path) {
    // The filter releases what its mirror holds, so the mirror goes last.
    const auto dropped = devices_.extract(path);
    std::unique_ptr<WatchedDevice> device = std::move(dropped.mapped());
    const auto entry = std::find_if(byId_.begin(), byId_.end(),
                                    [&](const auto& pair) { return pair.second == device.get(); });
    const KeyboardId id = entry->first;
    device.reset();
    byId_.erase(id);
}

void KeyHelper::bringDevices() {
    using Filtering = WatchedDevice::Filtering;
    const bool isWanted = filter_.isWanted() && !isEnding_;
    const auto now = WatchedDevice::Clock::now();
    std::optional<WatchedDevice::Clock::time_point> next;
    std::size_t keyboards = 0;
    std::size_t filtered = 0;
    std::size_t failed = 0;
    bool areAllFree = true;
    for (const auto& [path, device] : devices_) {
        if (!device->isKeyboard()) continue;
        ++keyboards;
        const Filtering filtering = device->bring(isWanted, options_.mirrorSettling);
        watchMirror(*device);
        areAllFree = areAllFree && !device->isGrabbed();
        if (filtering == Filtering::on) ++filtered;
        if (filtering == Filtering::waiting) {
            const auto ready = device->nextTry(options_.mirrorSettling);
            if (ready > now) next = next ? std::min(*next, ready) : ready;
        }
        if (filtering != Filtering::heldElsewhere && filtering != Filtering::noMirror) continue;
        ++failed;
        report(filtering == Filtering::noMirror ? to_session::Trouble::Kind::noMirror
                                                : to_session::Trouble::Kind::heldElsewhere,
               *device);
    }
    settlingTimer_.clear();
    if (next)
        settlingTimer_ = loop_.after(std::chrono::duration_cast<std::chrono::microseconds>(*next - now) +
                                         std::chrono::milliseconds(1),
                                     [this] { settle(); });
    // A keyboard that cannot be filtered does not keep the others from it.
    const bool isDone = filtered + failed == keyboards;
    const bool isOff = (!isWanted || failed == keyboards) && areAllFree;
    tellState(isOff                ? to_session::Filter::off
              : isWanted && isDone ? to_session::Filter::on
                                   : to_session::Filter::waiting);
    if (isEnding_ && areAllFree) loop_.end();
}

void KeyHelper::watchMirror(WatchedDevice& device) {
    if (device.mirror() == nullptr || device.mirrorWatch.isSet()) return;
    device.mirrorWatch =
        loop_.whenReadable(device.mirror()->descriptor(), [&device] { device.readMirror(); });
}

void KeyHelper::tellState(to_session::Filter filter) {
    if (!isListening()) return;
    const auto keyboards = std::count_if(devices_.begin(), devices_.end(),
                                         [](const auto& entry) { return entry.second->isKeyboard(); });
    const to_session::State state{counted(static_cast<std::size_t>(keyboards)), unreadable_, filter,
                                  filter_.refused()};
    if (told_ == state) return;
    told_ = state;
    session_.send(state);
}

void KeyHelper::report(to_session::Trouble::Kind kind, const WatchedDevice& device) {
    const std::string name = device.name();
    if (reported_.insert(std::to_string(static_cast<int>(kind)) + name).second)
        session_.send(to_session::Trouble{kind, name});
}

void KeyHelper::forward(KeyboardId keyboard, const std::vector<DeviceEvent>& events) {
    byId_.at(keyboard)->mirror()->write(events);
    hasForwarded_ = true;
}

} // namespace hopsel
