#include "platform/linux/gnome/gnome_shortcut_source.h"

#include "platform/linux/bus/bus_call.h"
#include "platform/linux/keys/key_codes.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QList>
#include <chrono>
#include <utility>

namespace hopsel {

namespace {

using namespace std::chrono_literals;

/// The shell does not tell when the user gives one of its own combinations another key.
constexpr auto retryInterval = 2000ms;
constexpr unsigned lastKey = 247; ///< of those that a keyboard of the shell can have

/// As the extension numbers them: the places in the list of all.
unsigned bitsOf(ModifierSet modifiers) {
    unsigned bits = 0;
    for (std::size_t i = 0; i < allModifierKeys.size(); ++i)
        if (modifiers.contains(allModifierKeys[i])) bits |= 1U << i;
    return bits;
}

/// As it goes over the bus.
struct Combination {
    uint key;
    uint held;
};

QDBusArgument& operator<<(QDBusArgument& out, const Combination& combination) {
    out.beginStructure();
    out << combination.key << combination.held;
    out.endStructure();
    return out;
}

const QDBusArgument& operator>>(const QDBusArgument& in, Combination& combination) {
    in.beginStructure();
    in >> combination.key >> combination.held;
    in.endStructure();
    return in; // NOLINT(bugprone-return-const-ref-from-parameter): the library's own form
}

} // namespace

GnomeShortcutSource::GnomeShortcutSource(std::shared_ptr<GnomeExtension> extension, Log& log)
    : extension_(std::move(extension)), failures_(log) {
    qDBusRegisterMetaType<Combination>();
    qDBusRegisterMetaType<QList<Combination>>();
    extension_->observe(&context_, [this] { extensionChanged(); });
    retryTimer_.setInterval(retryInterval);
    QObject::connect(&retryTimer_, &QTimer::timeout, &context_, [this] { send(); });
}

void GnomeShortcutSource::start() {
    if (isStarted_) return;
    if (!extension_->isAsked() && !extension_->can("combinations")) {
        const std::string reason = "GNOME's extension cannot swallow combinations, or is not enabled";
        failures_.failed(reason);
        throw TapFailure(TapFailure::Kind::creationFailed, reason);
    }
    isStarted_ = true;
    failures_.started();
    send();
}

void GnomeShortcutSource::setShortcuts(const ShortcutSet& shortcuts) {
    if (shortcuts == shortcuts_) return;
    shortcuts_ = shortcuts;
    if (isStarted_) send();
}

void GnomeShortcutSource::setStandsAside(bool standsAside) {
    if (std::exchange(standsAside_, standsAside) != standsAside && isStarted_) send();
}

void GnomeShortcutSource::stopFiltering() {
    if (!std::exchange(isStarted_, false)) return;
    send();
    setTaken({});
}

void GnomeShortcutSource::send() {
    std::vector<ShortcutKey> asked;
    QList<Combination> combinations;
    for (const ShortcutKey& shortcut : isStarted_ && !standsAside_ ? shortcuts_ : ShortcutSet()) {
        for (const std::uint16_t key : key_codes::linuxKeyCodes(shortcut.keyCode)) {
            if (key > lastKey) continue;
            asked.push_back(shortcut);
            combinations.append({key, bitsOf(shortcut.modifiers)});
        }
    }
    extension_->call("Filter", {QVariant::fromValue(combinations)}, &context_,
                     [this, asked = std::move(asked), count = ++sendCount_](const QDBusMessage& reply) {
                         if (count == sendCount_ && isStarted_) takeAnswer(reply, asked);
                     });
}

void GnomeShortcutSource::takeAnswer(const QDBusMessage& reply, const std::vector<ShortcutKey>& asked) {
    if (!bus_call::isReply(reply, "au")) return lost("GNOME's extension refuses to filter");
    QList<uint> places;
    reply.arguments().constFirst().value<QDBusArgument>() >> places;
    ShortcutSet taken;
    for (const uint place : places)
        if (place < asked.size()) taken.insert(asked[place]);
    if (!standsAside_) setTaken(std::move(taken));
}

void GnomeShortcutSource::setTaken(ShortcutSet taken) {
    taken.empty() ? retryTimer_.stop() : retryTimer_.start();
    if (taken == taken_) return;
    taken_ = std::move(taken);
    if (onUnavailableChanged) onUnavailableChanged();
}

bool GnomeShortcutSource::swallowed(unsigned key, std::uint64_t flags, bool isPress) const {
    if (!isStarted_ || !onInput || key > lastKey) return false;
    return onInput({isPress ? ShortcutInput::Kind::keyDown : ShortcutInput::Kind::keyUp,
                    key_codes::virtualKeyCode(static_cast<std::uint16_t>(key)), flags, false, false});
}

void GnomeShortcutSource::extensionChanged() {
    if (!isStarted_ || extension_->isAsked()) return;
    extension_->can("combinations") ? send() : lost("GNOME's extension is gone");
}

void GnomeShortcutSource::lost(const std::string& reason) {
    if (!std::exchange(isStarted_, false)) return;
    failures_.failed(reason);
    setTaken({});
    if (onDisabled) onDisabled(false);
}

} // namespace hopsel
