#include "platform/linux/kde_keys/kde_shortcut_source.h"

#include "core/base/product.h"
#include "platform/linux/bus/bus_call.h"
#include "platform/linux/kde_keys/qt_keys.h"

#include <QDBusArgument>
#include <algorithm>
#include <chrono>
#include <utility>
#include <vector>

namespace hopsel {

namespace {

using namespace std::chrono_literals;

/// KDE does not tell when a combination becomes free.
constexpr auto retryInterval = 2000ms;

const QString path = QStringLiteral("/kglobalaccel");
const QString interface = QStringLiteral("org.kde.KGlobalAccel");
const QString componentInterface = QStringLiteral("org.kde.kglobalaccel.Component");

/// Present from now on, and with the key that we say, not the one that it had once.
constexpr uint present = 2;
constexpr uint asWeSay = 4;

QString component() {
    return QString::fromUtf8(product::applicationIdentifier.data(),
                             qsizetype(product::applicationIdentifier.size()));
}
QString componentPath() { return "/component/" + component(); }

/// As KDE names an action: component and action, each for programs and for people.
QStringList actionId(const ShortcutKey& combination) {
    const QString name = QString::fromStdString(combination.storageString());
    const QString program = QString::fromUtf8(product::name.data(), qsizetype(product::name.size()));
    return {component(), name, program, name};
}

/// Whether KDE answers that the key is ours now.
bool isGiven(const QDBusMessage& reply, int number) {
    if (!bus_call::isReply(reply, "ai")) return false;
    const auto list = reply.arguments().constFirst().value<QDBusArgument>();
    const QDBusArgument& reader = list; // the non-const functions write
    bool isOurs = false;
    reader.beginArray();
    while (!reader.atEnd()) {
        int key = 0;
        reader >> key;
        isOurs = isOurs || key == number;
    }
    reader.endArray();
    return isOurs;
}

} // namespace

KdeShortcutSource::KdeShortcutSource(std::shared_ptr<BusLink> sessionBus, Log& log)
    : failures_(log), service_(std::move(sessionBus), "org.kde.kglobalaccel", [this] { lost(); }) {
    const auto listen = [this](const char* member, bool isPress) {
        service_.listen({"", componentPath(), componentInterface, member, "ssx", component()},
                        [this, isPress](const QDBusMessage& signal) { heard(signal, isPress); });
    };
    listen("globalShortcutPressed", true);
    listen("globalShortcutReleased", false);
    retryTimer_.setInterval(retryInterval);
    QObject::connect(&retryTimer_, &QTimer::timeout, &context_, [this] {
        for (const auto& [number, it] : registered_)
            if (it.isTaken) ask(number);
    });
}

void KdeShortcutSource::start() {
    if (isStarted_) return;
    if (!isOffered()) {
        const std::string reason = "KDE's service for global shortcuts is not there";
        failures_.failed(reason);
        throw TapFailure(TapFailure::Kind::creationFailed, reason);
    }
    isStarted_ = true;
    failures_.started();
    synchronise();
    service_.call(componentPath(), componentInterface, "shortcutNames", {}, &context_,
                  [this](const QDBusMessage& reply) { takeLeftOvers(reply); });
}

void KdeShortcutSource::setShortcuts(const ShortcutSet& shortcuts) {
    if (shortcuts == shortcuts_) return;
    shortcuts_ = shortcuts;
    if (!isStarted_) return;
    synchronise();
    tellUnavailable();
}

void KdeShortcutSource::setStandsAside(bool standsAside) {
    if (std::exchange(standsAside_, standsAside) != standsAside && isStarted_) synchronise();
}

ShortcutSet KdeShortcutSource::unavailableShortcuts() const {
    ShortcutSet unavailable = shortcuts_;
    for (const auto& [number, combination] : wanted()) {
        const auto found = registered_.find(number);
        if (found == registered_.end() || !found->second.isTaken) unavailable.erase(combination);
    }
    return unavailable;
}

KdeShortcutSource::Wanted KdeShortcutSource::wanted() const {
    // Which of two that KDE takes for one is left out must not change from one time to the next.
    std::vector<ShortcutKey> ordered(shortcuts_.begin(), shortcuts_.end());
    std::sort(ordered.begin(), ordered.end(), [](const ShortcutKey& a, const ShortcutKey& b) {
        return a.storageString() < b.storageString();
    });
    Wanted wanted;
    for (const ShortcutKey& combination : ordered)
        if (const auto number = qt_keys::numberOf(combination)) wanted.try_emplace(*number, combination);
    return wanted;
}

void KdeShortcutSource::synchronise() {
    const Wanted wanted = standsAside_ ? Wanted() : this->wanted();
    for (auto it = registered_.begin(); it != registered_.end();) {
        const auto found = wanted.find(it->first);
        if (found != wanted.end() && found->second == it->second.combination) {
            ++it;
            continue;
        }
        remove(it->second.combination.storageString());
        it = registered_.erase(it);
    }
    for (const auto& [number, combination] : wanted)
        if (registered_.count(number) == 0) add(number, combination);
}

void KdeShortcutSource::add(int number, const ShortcutKey& combination) {
    registered_[number] = {combination};
    service_.call(path, interface, "doRegister", {actionId(combination)}, &context_, [](const auto&) {});
    ask(number);
}

void KdeShortcutSource::ask(int number) {
    const QVariantList arguments{actionId(registered_.at(number).combination),
                                 QVariant::fromValue(QList<int>{number}), present | asWeSay};
    service_.call(path, interface, "setShortcut", arguments, &context_,
                  [this, number](const QDBusMessage& reply) { takeAnswer(number, reply); });
}

void KdeShortcutSource::takeAnswer(int number, const QDBusMessage& reply) {
    const auto found = registered_.find(number);
    if (found == registered_.end()) return;
    const bool isTaken = !isGiven(reply, number);
    if (std::exchange(found->second.isTaken, isTaken) != isTaken) tellUnavailable();
    const bool isAnyTaken =
        std::any_of(registered_.begin(), registered_.end(), [](const auto& it) { return it.second.isTaken; });
    if (!isAnyTaken)
        retryTimer_.stop();
    else if (!retryTimer_.isActive())
        retryTimer_.start();
}

void KdeShortcutSource::remove(const std::string& action) {
    service_.call(path, interface, "unregister", {component(), QString::fromStdString(action)}, &context_,
                  [](const auto&) {});
}

void KdeShortcutSource::takeLeftOvers(const QDBusMessage& reply) {
    if (!isStarted_ || !bus_call::isReply(reply, "as")) return;
    for (const QString& action : reply.arguments().constFirst().toStringList()) {
        const bool isOurs = std::any_of(registered_.begin(), registered_.end(), [&](const auto& it) {
            return it.second.combination.storageString() == action.toStdString();
        });
        if (!isOurs) remove(action.toStdString());
    }
}

// A key that is held down is told as pressed again and again.
void KdeShortcutSource::heard(const QDBusMessage& signal, bool isPress) {
    const std::string action = signal.arguments().at(1).toString().toStdString();
    const auto found = std::find_if(registered_.begin(), registered_.end(), [&](const auto& it) {
        return it.second.combination.storageString() == action;
    });
    if (!isStarted_ || found == registered_.end()) return;
    const bool wasDown = std::exchange(found->second.isDown, isPress);
    if (!isPress && !wasDown) return;
    const ShortcutKey combination = found->second.combination;
    const auto kind = isPress ? ShortcutInput::Kind::keyDown : ShortcutInput::Kind::keyUp;
    const std::uint64_t flags = isPress ? flagsOf(combination.modifiers) : 0;
    const auto tell = onInput;
    if (tell) tell({kind, combination.keyCode, flags, isPress && wasDown, false});
    if (onHandled) onHandled();
}

void KdeShortcutSource::stopFiltering() {
    if (!std::exchange(isStarted_, false)) return;
    retryTimer_.stop();
    for (const auto& [number, it] : std::exchange(registered_, {})) remove(it.combination.storageString());
}

void KdeShortcutSource::lost() {
    if (!isStarted_ || isOffered()) return;
    isStarted_ = false;
    retryTimer_.stop();
    registered_.clear();
    failures_.failed("KDE's service for global shortcuts has gone");
    const auto tell = onDisabled;
    if (tell) tell(false);
}

void KdeShortcutSource::tellUnavailable() const {
    const auto tell = onUnavailableChanged;
    if (tell) tell();
}

} // namespace hopsel
