#include "platform/linux/keys_helper/session/helper_shortcut_source.h"

#include "platform/linux/keys_helper/session/helper_words.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace hopsel {

namespace {

using namespace std::chrono_literals;

constexpr auto retryInterval = 2000ms;

} // namespace

HelperShortcutSource::HelperShortcutSource(std::shared_ptr<HelperLink> link, Log& log)
    : link_(std::move(link)), failures_(log), log_(log) {
    retryTimer_.setInterval(retryInterval);
    retryTimer_.setSingleShot(true);
    QObject::connect(&retryTimer_, &QTimer::timeout, &retryTimer_, [this] { declare(); });
}

void HelperShortcutSource::start() {
    if (isStarted_) return;
    // The listening source has opened it.
    if (!link_->isReady() && !link_->failure().empty()) {
        failures_.failed(link_->failure());
        throw TapFailure(TapFailure::Kind::creationFailed, link_->failure());
    }
    isStarted_ = true;
    declare();
}

void HelperShortcutSource::setShortcuts(const ShortcutSet& shortcuts) {
    if (shortcuts == shortcuts_) return;
    shortcuts_ = shortcuts;
    if (!isStarted_) return;
    declare();
    if (onUnavailableChanged) onUnavailableChanged();
}

void HelperShortcutSource::setMeanings(const told_keys::Meanings& meanings) {
    if (meanings == meanings_) return;
    meanings_ = meanings;
    if (isStarted_) declare();
}

ShortcutSet HelperShortcutSource::unavailableShortcuts() const {
    const KeyDeclaration permitted = declaration().permitted();
    ShortcutSet refused = shortcuts_;
    for (const ShortcutKey& combination : permitted.combinations) refused.erase(combination);
    return refused;
}

void HelperShortcutSource::asked(const to_session::Ask& ask) {
    const bool swallow = isStarted_ && onInput &&
                         onInput({ShortcutInput::Kind::keyDown, ask.combination.keyCode,
                                  flagsOf(ask.combination.modifiers), false, false});
    link_->send(to_helper::Answer{ask.id, swallow});
}

void HelperShortcutSource::released(const to_session::Released& key, std::uint64_t flags) const {
    if (isStarted_ && onInput) onInput({ShortcutInput::Kind::keyUp, key.keyCode, flags, false, false});
}

void HelperShortcutSource::troubled(const to_session::Trouble& trouble) {
    using Kind = to_session::Trouble::Kind;
    if (!isStarted_) return;
    switch (trouble.kind) {
    case Kind::lateAnswers:
    case Kind::noMirror: return lost(helper_words::of(trouble));
    case Kind::heldElsewhere: {
        const std::string words = helper_words::of(trouble);
        if (std::exchange(toldTrouble_, words) != words) log_.write(Log::Level::error, "ActiveTap", words);
        retryTimer_.start();
        break;
    }
    case Kind::inactive:
    case Kind::busy: break; // the link says so
    }
}

void HelperShortcutSource::lost(const std::string& reason) {
    if (!isStarted_) return;
    stopFiltering();
    failures_.failed(reason);
    if (onDisabled) onDisabled(false);
}

KeyDeclaration HelperShortcutSource::declaration() const {
    KeyDeclaration declaration{meanings_, {shortcuts_.begin(), shortcuts_.end()}};
    // Which of too many are left out must not change from one time to the next.
    std::sort(declaration.combinations.begin(), declaration.combinations.end(),
              [](const ShortcutKey& a, const ShortcutKey& b) {
                  return std::pair(a.keyCode, a.modifiers.bits()) < std::pair(b.keyCode, b.modifiers.bits());
              });
    return declaration;
}

void HelperShortcutSource::declare() { link_->send(to_helper::Declare{declaration().permitted()}); }

void HelperShortcutSource::stopFiltering() {
    if (!std::exchange(isStarted_, false)) return;
    retryTimer_.stop();
    toldTrouble_.clear();
    link_->send(to_helper::Declare{{.meanings = meanings_, .combinations = {}}});
}

} // namespace hopsel
