#include "platform/linux/keys_helper/session/helper_key_session.h"

#include "core/base/overloaded.h"
#include "model/texts/l10n.h"
#include "platform/linux/keys/key_codes.h"
#include "platform/linux/keys_helper/session/helper_words.h"

#include <algorithm>
#include <utility>
#include <variant>

namespace hopsel {

namespace {

class HelperPermissions final : public Permissions {
  public:
    explicit HelperPermissions(std::shared_ptr<HelperLink> link) : link_(std::move(link)) {}

    bool accessibilityGranted() override { return link_->isOffered(); }
    bool requestAccessibility() override { return link_->isOffered(); }
    bool inputMonitoringGranted() override { return link_->isOffered(); }
    bool requestInputMonitoring() override { return link_->isOffered(); }

  private:
    std::shared_ptr<HelperLink> link_;
};

WayOut wayOut(HelperSwitch::Outcome outcome) {
    using Outcome = HelperSwitch::Outcome;
    const auto what = outcome == Outcome::declined   ? l10n::Key::keyHelperDeclined
                      : outcome == Outcome::notAsked ? l10n::Key::keyHelperNotAsked
                                                     : l10n::Key::keyHelperFailed;
    return {l10n::t(what), helper_words::enableCommand};
}

/// Whether word follows that its answer is too late: its key is on its way to the desktop.
bool isLate(const to_session::Ask& ask, const std::vector<to_session::Message>& messages) {
    return std::any_of(messages.begin(), messages.end(), [&](const to_session::Message& message) {
        const auto* late = std::get_if<to_session::Late>(&message);
        return late != nullptr && late->id == ask.id;
    });
}

} // namespace

HelperKeySession::HelperKeySession(HelperPlaces places, HelperListenSource::Clock clock, Log& log)
    : log_(log),
      switch_(places.enabler),
      link_(std::make_shared<HelperLink>(std::move(places))),
      listenSource_(std::make_shared<HelperListenSource>(link_, std::move(clock))),
      shortcutSource_(std::make_shared<HelperShortcutSource>(link_, log)) {
    link_->onMessages = [this](const auto& messages) { take(messages); };
    link_->onLost = [this] {
        const std::string reason = link_->failure();
        shortcutSource_->lost(reason);
        listenSource_->lost();
    };
    listenSource_->onModifierDown = [this] {
        if (onModifierDown) onModifierDown();
    };
    keymap_.onKeymap = [this](const KeyMeanings& keymap) { setKeymap(keymap); };
    keymap_.start();
}

// The engine may live a little longer.
HelperKeySession::~HelperKeySession() {
    link_->onMessages = nullptr;
    link_->onLost = nullptr;
    listenSource_->onModifierDown = nullptr;
}

std::shared_ptr<Permissions> HelperKeySession::permissions() {
    return std::make_shared<HelperPermissions>(link_);
}

void HelperKeySession::remedy(const QObject* context, const std::function<void(const WayOut&)>& otherwise) {
    if (!link_->lacksService()) return otherwise({});
    switch_.turnOn(context, [link = link_, otherwise](HelperSwitch::Outcome outcome) {
        if (outcome == HelperSwitch::Outcome::on) return link->forgetFailure();
        otherwise(wayOut(outcome));
    });
}

std::function<PrintedKeys()> HelperKeySession::printedKeys() const {
    return [printed = printed_] { return *printed; };
}

void HelperKeySession::setKeymap(const KeyMeanings& keymap) {
    *printed_ = keymap.printed();
    told_keys::Meanings meanings;
    for (std::size_t key = 0; key < told_keys::count; ++key)
        meanings.at(key) =
            keymap.modifier(static_cast<XKeyCode>(told_keys::linuxCode(key) + key_codes::x11Offset));
    listenSource_->setMeanings(meanings);
    shortcutSource_->setMeanings(meanings);
}

void HelperKeySession::take(const std::vector<to_session::Message>& messages) {
    for (const to_session::Message& message : messages) {
        const auto* ask = std::get_if<to_session::Ask>(&message);
        if (ask != nullptr && isLate(*ask, messages)) continue;
        take(message);
        if (onHandled) onHandled();
    }
}

void HelperKeySession::take(const to_session::Message& message) {
    std::visit(Overloaded{
                   [](const to_session::Welcome&) {},
                   [this](const to_session::State& state) { told(state); },
                   [this](const to_session::Held& held) { listenSource_->heard(held); },
                   [this](const to_session::Modifier& modifier) { listenSource_->heard(modifier); },
                   [this](const to_session::Other& other) { listenSource_->heard(other); },
                   [this](const to_session::Ask& ask) { shortcutSource_->asked(ask); },
                   [this](const to_session::Released& key) {
                       shortcutSource_->released(key, listenSource_->flags());
                   },
                   [](const to_session::Late&) {},
                   [this](const to_session::Trouble& trouble) { shortcutSource_->troubled(trouble); },
               },
               message);
}

void HelperKeySession::told(const to_session::State& state) {
    const std::string words = helper_words::unreadable(state);
    if (words != std::exchange(toldUnreadable_, words) && !words.empty())
        log_.write(Log::Level::error, "KeyHelper", words);
}

} // namespace hopsel
