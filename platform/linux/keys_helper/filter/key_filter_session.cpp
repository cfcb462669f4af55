// Keyboards and sessions that come and go, and the answers to what was asked.
#include "platform/linux/keys_helper/filter/key_filter.h"

#include <utility>

namespace hopsel {

void KeyFilter::add(KeyboardId keyboard, const KeysDown& down) {
    FilteredKeyboard& added = keyboards_[keyboard];
    added.down = down;
    if (added.toldKeysDown() != 0) tellHeld();
}

void KeyFilter::remove(KeyboardId keyboard) {
    if (asked_ && waiting_.front().keyboard == keyboard) asked_.reset();
    std::erase_if(waiting_, [&](const Waiting& item) { return item.keyboard == keyboard; });

    const told_keys::Mask before = toldKeysDown();
    giveBack(keyboard);
    keyboards_.erase(keyboard);
    if (toldKeysDown() != before) tellHeld();
    if (!asked_) workOff();
}

bool KeyFilter::isAtRest(KeyboardId keyboard) const {
    for (const Waiting& item : waiting_)
        if (item.keyboard == keyboard) return false;
    return keyboards_.at(keyboard).down.none();
}

void KeyFilter::giveBack(KeyboardId keyboard) {
    FilteredKeyboard& given = keyboards_.at(keyboard);
    pass(keyboard, given, given.mirrorReleases());
    for (const auto& [linuxCode, keyCode] : std::exchange(given.swallowed, {}))
        output_.tell(to_session::Released{keyCode});
    given.isMirrored = false;
}

void KeyFilter::declare(const KeyDeclaration& declaration) {
    const KeyDeclaration permitted = declaration.permitted();
    meanings_ = permitted.meanings;
    combinations_ = {permitted.combinations.begin(), permitted.combinations.end()};
    refused_ = static_cast<std::uint8_t>(declaration.combinations.size() - permitted.combinations.size());
    lateAnswers_ = 0;
}

void KeyFilter::endSession() {
    declare({});
    if (asked_) resolve(false);
}

void KeyFilter::answer(std::uint32_t id, bool swallow) {
    if (asked_ != id) return;
    lateAnswers_ = 0;
    resolve(swallow);
}

void KeyFilter::answerIsLate() {
    if (!asked_) return;
    output_.tell(to_session::Late{*asked_});
    const bool isLast = ++lateAnswers_ == helper_wire::lateAnswersAllowed;
    resolve(false);
    if (isLast) output_.tell(to_session::Trouble{to_session::Trouble::Kind::lateAnswers, {}});
}

void KeyFilter::resolve(bool swallow) {
    asked_.reset();
    verdict_ = swallow;
    workOff();
}

void KeyFilter::tellHeld() {
    otherTold_ = true; // no tap is known to be under way
    output_.tell(to_session::Held{toldKeysDown()});
}

told_keys::Mask KeyFilter::toldKeysDown() const {
    unsigned mask = 0;
    for (const auto& [id, keyboard] : keyboards_) mask |= keyboard.toldKeysDown();
    return static_cast<told_keys::Mask>(mask);
}

ModifierSet KeyFilter::modifiersDown() const {
    const told_keys::Mask keys = toldKeysDown();
    ModifierSet modifiers;
    for (std::size_t index = 0; index < told_keys::count; ++index)
        if (const auto& meaning = meanings_.at(index); meaning && told_keys::contains(keys, index))
            modifiers.insert(*meaning);
    return modifiers;
}

} // namespace hopsel
