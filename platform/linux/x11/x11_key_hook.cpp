#include "platform/linux/x11/x11_key_hook.h"

#include "platform/linux/keys/key_codes.h"
#include "platform/linux/x11/x11_key_hook_session.h"
#include "platform/linux/x11/x11_keymap.h"
#include "platform/linux/x11/xkb_extension.h"

#include <array>
#include <cmath>
#include <poll.h>
#include <stdexcept>
#include <utility>
#include <xcb/xcbext.h>
#include <xcb/xtest.h>

namespace hopsel {

namespace {

using namespace std::chrono_literals;

/// A change of the keymap comes as several events, and window managers grab their keys anew after it.
constexpr auto refreshDelay = 200ms;

/// A connection that is lost again so soon is somebody's doing: whoever started us starts us again, later.
constexpr double tooSoon = 0.5;

/// Sequence numbers wrap around.
bool isEarlier(std::uint32_t a, std::uint32_t b) { return static_cast<std::int32_t>(a - b) < 0; }

const xcb_input_raw_key_press_event_t& asRawKey(const xcb_generic_event_t& event) {
    return reinterpret_cast<const xcb_input_raw_key_press_event_t&>(event);
}
const xcb_input_key_press_event_t& asKey(const xcb_generic_event_t& event) {
    return reinterpret_cast<const xcb_input_key_press_event_t&>(event);
}
const xcb_xkb_state_notify_event_t& asXkbState(const xcb_generic_event_t& event) {
    return reinterpret_cast<const xcb_xkb_state_notify_event_t&>(event);
}

} // namespace

X11KeyHook::X11KeyHook(Clock clock, std::shared_ptr<KeyboardGuard> guard)
    : clock_(std::move(clock)), guard_(std::move(guard)) {
    refreshTimer_.setSingleShot(true);
    QObject::connect(&refreshTimer_, &QTimer::timeout, &refreshTimer_, [this] { refreshKeyboard(); });
}

X11KeyHook::~X11KeyHook() = default;

std::array<std::uint32_t, 2> X11KeyHook::handles() const { return session_->handles(); }

void X11KeyHook::startListening(Listener listener) {
    if (!session_) open();
    listener_ = std::move(listener);
}

void X11KeyHook::stopListening() {
    listener_ = nullptr;
    closeIfUnused();
}

void X11KeyHook::startFiltering(const ShortcutSet& shortcuts, Filter filter) {
    taken_.clear();
    if (!session_) throw std::runtime_error("the keyboard is not listened to");
    shortcuts_ = shortcuts;
    installGrabs();
    filter_ = std::move(filter);
}

void X11KeyHook::setShortcuts(const ShortcutSet& shortcuts) {
    if (!filter_ || shortcuts == shortcuts_) return;
    shortcuts_ = shortcuts;
    try {
        installGrabs();
    } catch (...) {
        filter_ = nullptr;
        throw;
    }
}

void X11KeyHook::stopFiltering() {
    filter_ = nullptr;
    shortcuts_.clear();
    if (session_) session_->grabs.removeAll();
    closeIfUnused();
}

bool X11KeyHook::canPost() const { return session_ && session_->hasXTest; }

bool X11KeyHook::post(std::uint16_t linuxCode, bool press) {
    const unsigned code = linuxCode + unsigned{key_codes::x11Offset};
    if (!canPost() || code > 255) return false;
    const auto key = static_cast<XKeyCode>(code);
    auto* c = session_->primary.get();
    const auto cookie = xcb_test_fake_input(c, press ? XCB_KEY_PRESS : XCB_KEY_RELEASE, key, XCB_CURRENT_TIME,
                                            XCB_NONE, 0, 0, 0);
    ownPosts_.posted(cookie.sequence, key, press);
    placeBarrier();
    session_->flush();
    return !session_->isLost();
}

std::optional<std::uint16_t> X11KeyHook::silentKey() const {
    const auto key = meanings_.silentKey();
    if (!key) return std::nullopt;
    return static_cast<std::uint16_t>(*key - key_codes::x11Offset);
}

bool X11KeyHook::isBusy(std::uint16_t linuxCode) const {
    const std::size_t key = linuxCode + std::size_t{key_codes::x11Offset};
    return !held_.modifiers().empty() || (key < HeldKeys::keyCount && held_.down()[key]);
}

void X11KeyHook::open() {
    session_ = std::make_unique<X11KeyHookSession>([this] { dispatch(); });
    const double beforeAsking = clock_();
    const auto serverTime = X11ServerClock::ask(session_->helper);
    serverClock_ = X11ServerClock(serverTime.value_or(0), beforeAsking);
    meanings_ = x11_keymap::readMeanings(session_->primary);
    // What happened up to here is in the answer below.
    while (session_->primary.nextQueuedEvent()) {
    }
    held_ = {};
    held_.rebuild(x11_input_devices::pressedKeys(session_->primary),
                  [this](XKeyCode key) { return meaning(key); });
    held_.setCapsLock(x11_input_devices::isCapsLockOn(session_->primary));
    dispatchSoon();
    refreshLater(); // a keymap or a keyboard that changed meanwhile
}

void X11KeyHook::closeIfUnused() {
    const bool isUsed = listener_ || filter_ || (session_ && session_->hold.isActive());
    if (!isUsed && !isDispatching_) close();
}

void X11KeyHook::close() {
    if (guard_) guard_->rest();
    refreshTimer_.stop();
    session_.reset();
    pending_.clear();
    barriers_.clear();
    helperEvent_.reset();
    ownPosts_ = {};
}

void X11KeyHook::lose() {
    close();
    if (guard_ && guard_->hasCut() && onGivenBack) onGivenBack();
    const bool isOpenAgain = reopen();
    if (!isOpenAgain) {
        listener_ = nullptr;
        filter_ = nullptr;
        shortcuts_.clear();
    }
    if (const auto callback = onLost) callback(isOpenAgain);
}

// Another program may have cut a connection; the keys are then free for the moment in between. A server that
// has gone refuses at once.
bool X11KeyHook::reopen() {
    const double now = clock_();
    if (now - std::exchange(reopenedAt_, now) < tooSoon) return false;
    try {
        open();
    } catch (const std::runtime_error&) {
        return false;
    }
    if (filter_) refreshGrabs();
    return isOpen();
}

void X11KeyHook::dispatch() {
    if (isDispatching_) return;
    while (session_ && !session_->isLost()) {
        isDispatching_ = isHandling_ = true;
        const bool handledOne = step();
        isDispatching_ = isHandling_ = false;
        if (guard_ && pending_.empty()) guard_->handled(lastKey_);
        if (!handledOne) break;
        // Between two events what was put off may run, even the event loop, which may call this again.
        if (onHandled) onHandled();
    }
    if (!session_) return;
    session_->flush();
    if (session_->isLost())
        lose();
    else
        closeIfUnused();
}

void X11KeyHook::dispatchFor(double seconds) {
    const double end = clock_() + seconds;
    dispatch();
    while (true) {
        const double left = end - clock_();
        if (left <= 0) return;
        std::array<pollfd, 2> sockets{};
        const nfds_t count = session_ ? sockets.size() : 0;
        if (session_) {
            sockets[0] = {.fd = session_->primary.fileDescriptor(), .events = POLLIN, .revents = 0};
            sockets[1] = {.fd = session_->helper.fileDescriptor(), .events = POLLIN, .revents = 0};
        }
        poll(sockets.data(), count, static_cast<int>(std::ceil(left * 1000)));
        dispatch();
    }
}

bool X11KeyHook::step() {
    if (const auto event = session_->primary.nextEvent()) {
        handlePrimary(*event);
        return true;
    }
    return handleHelper() || settleAnsweredBarrier();
}

void X11KeyHook::handlePrimary(const xcb_generic_event_t& event) {
    // An event with the number of a later request came after the answers of the earlier ones.
    while (!barriers_.empty() && !isEarlier(event.full_sequence, barriers_.front().sequence))
        settleFrontBarrier();
    if (!handleXInput(session_->primary, event) && eventType(event) == session_->xkbFirstEvent)
        handleXkb(event);
}

bool X11KeyHook::handleHelper() {
    if (!readHelperEvent()) return false;
    // The raw event of the same key press was written first, but to the other connection.
    session_->primary.roundTrip();
    while (const auto earlier = session_->primary.nextQueuedEvent()) handlePrimary(*earlier);
    if (helperEvent_) takeHelperEvent();
    return true;
}

bool X11KeyHook::readHelperEvent() {
    while (!helperEvent_) {
        auto event = session_->helper.nextEvent();
        if (!event) return false;
        if (eventType(*event) == XCB_GE_GENERIC) helperEvent_ = std::move(event);
    }
    return true;
}

void X11KeyHook::takeHelperEvent() {
    const auto event = std::move(helperEvent_);
    handleXInput(session_->helper, *event);
}

bool X11KeyHook::handleXInput(X11Connection& connection, const xcb_generic_event_t& event) {
    const auto& generic = reinterpret_cast<const xcb_ge_generic_event_t&>(event);
    if (eventType(event) != XCB_GE_GENERIC || generic.extension != session_->xinputOpcode) return false;
    switch (generic.event_type) {
    case XCB_INPUT_RAW_KEY_PRESS:
    case XCB_INPUT_RAW_KEY_RELEASE:
        lastKey_ = lastKey_.next(asRawKey(event).time);
        onRawKey(asRawKey(event), generic.event_type == XCB_INPUT_RAW_KEY_PRESS);
        break;
    case XCB_INPUT_RAW_BUTTON_PRESS: onRawButton(asRawKey(event).detail, asRawKey(event).time); break;
    case XCB_INPUT_KEY_PRESS: onGrabbedKey(connection, asKey(event), true); break;
    case XCB_INPUT_KEY_RELEASE: onGrabbedKey(connection, asKey(event), false); break;
    case XCB_INPUT_HIERARCHY: refreshLater(); break;
    default: break;
    }
    return true;
}

void X11KeyHook::handleXkb(const xcb_generic_event_t& event) {
    const auto& state = asXkbState(event);
    if (state.xkbType == XCB_XKB_STATE_NOTIFY)
        held_.setCapsLock((state.lockedMods & XCB_MOD_MASK_LOCK) != 0);
    else
        refreshLater();
}

void X11KeyHook::placeBarrier() {
    const auto cookie = xcb_query_keymap(session_->primary.get());
    barriers_.push_back({cookie.sequence, pending_.lastNumber()});
}

bool X11KeyHook::settleAnsweredBarrier() {
    if (barriers_.empty()) return false;
    void* reply = nullptr;
    xcb_generic_error_t* error = nullptr;
    const std::uint32_t sequence = barriers_.front().sequence;
    if (xcb_poll_for_reply(session_->primary.get(), sequence, &reply, &error) == 0) {
        // Looking for the answer may have read an event, of which the descriptor will not tell any more.
        const auto event = session_->primary.nextQueuedEvent();
        if (event) handlePrimary(*event);
        return event != nullptr;
    }
    barriers_.front().reply.reset(static_cast<xcb_query_keymap_reply_t*>(reply));
    const XcbPtr<xcb_generic_error_t> ownedError(error);
    // Events may have been read along with the answer. Those that came after it settle the barrier
    // themselves.
    while (const auto event = session_->primary.nextQueuedEvent()) handlePrimary(*event);
    if (!barriers_.empty() && barriers_.front().sequence == sequence) settleFrontBarrier();
    return true;
}

void X11KeyHook::settleFrontBarrier() {
    Barrier barrier = std::move(barriers_.front());
    barriers_.pop_front();
    X11KeyHookSession& session = *session_;
    if (!barrier.reply) {
        const xcb_query_keymap_cookie_t cookie{barrier.sequence};
        barrier.reply.reset(xcb_query_keymap_reply(session.primary.get(), cookie, nullptr));
    }
    if (session.hold.isWithHelper()) {
        // A grab event may be on its way on the other connection. It is handled now only if it belongs to a
        // key that this barrier settles: a later one waits for its own raw event.
        if (!helperEvent_) session.helper.roundTrip();
        if (readHelperEvent() && helperEvent_) {
            const auto& event = asKey(*helperEvent_);
            const auto key = static_cast<XKeyCode>(event.detail);
            const bool press = event.event_type == XCB_INPUT_KEY_PRESS;
            if (pending_.contains(key, press, event.time, barrier.upTo)) takeHelperEvent();
        }
    }
    if (barrier.reply) ownPosts_.settle(barrier.sequence, x11_input_devices::pressedKeys(*barrier.reply));
    pending_.settle(barrier.upTo, [this](const X11PendingKey& key) { onUngrabbed(key); });
}

/// Whoever waited for the server's answers may have read events along, of which the descriptors will not
/// tell.
void X11KeyHook::dispatchSoon() {
    QMetaObject::invokeMethod(&refreshTimer_, [this] { dispatch(); }, Qt::QueuedConnection);
}

void X11KeyHook::installGrabs() {
    dispatchSoon();
    taken_ = session_->grabs.install(shortcuts_, meanings_, session_->masters);
    if (!taken_.empty() && taken_.size() == shortcuts_.size())
        throw std::runtime_error("other programs have grabbed every key combination of the rules");
    if (guard_ && !shortcuts_.empty()) guard_->watch(session_->handles());
}

void X11KeyHook::refreshLater() {
    if (!refreshTimer_.isActive()) refreshTimer_.start(refreshDelay);
}

void X11KeyHook::refreshKeyboard() {
    dispatch();
    if (!session_) return;
    if (session_->hold.isActive() || !pending_.empty()) return refreshLater();
    session_->masters = x11_input_devices::masterKeyboards(session_->primary);
    meanings_ = x11_keymap::readMeanings(session_->primary);
    resynchronise();
    if (session_ && filter_) refreshGrabs();
}

void X11KeyHook::retryTaken() {
    dispatch();
    if (session_ && filter_ && !taken_.empty() && !session_->hold.isActive()) refreshGrabs();
}

void X11KeyHook::refreshGrabs() {
    const ShortcutSet before = taken_;
    try {
        installGrabs();
    } catch (const std::runtime_error&) {
        filter_ = nullptr;
        if (const auto callback = onFilterLost) callback();
        return;
    }
    if (taken_ == before) return;
    if (const auto callback = onTakenChanged) callback();
}

void X11KeyHook::resynchronise() {
    dispatch();
    if (!session_) return;
    const auto pressed = x11_input_devices::pressedKeys(session_->primary);
    // Keys that moved meanwhile make the answer stale; someone is typing, so try when it is quiet.
    if (const auto event = session_->primary.nextQueuedEvent()) {
        isDispatching_ = true;
        handlePrimary(*event);
        isDispatching_ = false;
        refreshLater();
        return dispatch();
    }
    held_.rebuild(pressed, [this](XKeyCode key) { return meaning(key); });
    held_.setCapsLock(x11_input_devices::isCapsLockOn(session_->primary));
    dispatch();
}

} // namespace hopsel
