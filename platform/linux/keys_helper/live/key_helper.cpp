// The session's side of the helper, and its end.
#include "platform/linux/keys_helper/live/key_helper.h"

#include "core/base/overloaded.h"
#include "platform/linux/keys/key_codes.h"

#include <thread>
#include <unistd.h>
#include <utility>
#include <variant>

namespace hopsel {

KeyHelper::KeyHelper(EventLoop& loop, Descriptor session, Options options)
    : loop_(loop),
      session_(std::move(session)),
      options_(options),
      filter_(*this, key_codes::virtualKeyCode),
      seat_(loop, [this] { seatChanged(); }),
      folder_(loop,
              [this] {
                  findDevices();
                  settle();
              }),
      sessionWatch_(loop.whenReadable(session_.descriptor(), [this] { hear(); })) {
    seatChanged();
}

KeyHelper::~KeyHelper() {
    filter_.endSession();
    for (const auto& [path, device] : devices_) device->giveBack();
    if (hasForwarded_) std::this_thread::sleep_for(options_.farewell);
    devices_.clear(); // they speak to the filter while they go
}

void KeyHelper::hear() {
    while (const auto message = session_.receive()) {
        if (const auto* hello = std::get_if<to_helper::Hello>(&*message)) {
            greeted(*hello);
        } else if (!hasGreeted_) {
            session_.end();
        } else if (const auto* declare = std::get_if<to_helper::Declare>(&*message)) {
            filter_.declare(declare->declaration);
            reported_.clear();
            for (const auto& [path, device] : devices_) device->forgetFailure();
            settle();
        } else if (const auto* answer = std::get_if<to_helper::Answer>(&*message)) {
            filter_.answer(answer->id, answer->swallow);
        }
    }
    settle();
}

void KeyHelper::greeted(const to_helper::Hello& hello) {
    session_.send(to_session::Welcome{});
    if (hello.version != helperProtocolVersion || hasGreeted_) return session_.end();
    hasGreeted_ = true;
    findDevices();
    filter_.tellHeld();
}

bool KeyHelper::isInFront() const {
    if (options_.isAnyoneServed) return true;
    if (!SeatWatch::isTold()) return !options_.isService;
    const auto inFront = SeatWatch::userInFront();
    return inFront && inFront == session_.user();
}

void KeyHelper::seatChanged() {
    if (isEnding_ || isInFront()) return;
    session_.send(to_session::Trouble{to_session::Trouble::Kind::inactive, {}});
    endSession();
    // The keyboard is somebody else's now: no lingering.
    loop_.end();
}

void KeyHelper::settle() {
    if (session_.isOver() && !isEnding_) endSession();
    if (filter_.asked() != timed_) {
        timed_ = filter_.asked();
        answerTimer_.clear();
        if (timed_)
            answerTimer_ = loop_.after(options_.answer, [this] {
                filter_.answerIsLate();
                settle();
            });
    }
    bringDevices();
}

void KeyHelper::endSession() {
    session_.end();
    isEnding_ = true;
    sessionWatch_.clear();
    filter_.endSession();
    lingeringTimer_ = loop_.after(options_.lingering, [this] { loop_.end(); });
}

} // namespace hopsel
