#include "platform/linux/kde_keys/kde_key_session.h"

#include <array>
#include <utility>

namespace hopsel {

namespace {

/// The helper's filter while the helper is heard, else KDE's: which of the two is settled at each start.
class EitherShortcutSource final : public ShortcutSource {
  public:
    EitherShortcutSource(std::shared_ptr<ShortcutSource> helper, std::shared_ptr<ShortcutSource> kde,
                         std::shared_ptr<KdeListenSource> listening)
        : both_{std::move(helper), std::move(kde)}, listening_(std::move(listening)) {
        for (const auto& source : both_) {
            source->onInput = [this](const ShortcutInput& input) { return onInput && onInput(input); };
            source->onDisabled = [this](bool reenabled) {
                const auto tell = onDisabled;
                if (tell) tell(reenabled);
            };
            source->onUnavailableChanged = [this] {
                const auto tell = onUnavailableChanged;
                if (tell) tell();
            };
        }
    }
    ~EitherShortcutSource() override {
        for (const auto& source : both_) {
            source->onInput = nullptr;
            source->onDisabled = nullptr;
            source->onUnavailableChanged = nullptr;
            source->stop();
        }
    }

    void start() override { active().start(); }
    void stop() override {
        for (const auto& source : both_) source->stop();
    }
    void setShortcuts(const ShortcutSet& shortcuts) override {
        for (const auto& source : both_) source->setShortcuts(shortcuts);
    }
    void setStandsAside(bool standsAside) override {
        for (const auto& source : both_) source->setStandsAside(standsAside);
    }
    ShortcutSet unavailableShortcuts() const override { return active().unavailableShortcuts(); }

  private:
    ShortcutSource& active() const { return *both_.at(listening_->hearsTaps() ? 0 : 1); }

    std::array<std::shared_ptr<ShortcutSource>, 2> both_;
    std::shared_ptr<KdeListenSource> listening_;
};

} // namespace

KdeKeySession::KdeKeySession(const std::shared_ptr<BusLink>& sessionBus, HelperPlaces places,
                             HelperListenSource::Clock clock, Log& log)
    : helper_(std::move(places), std::move(clock), log),
      kde_(std::make_shared<KdeShortcutSource>(sessionBus, log)),
      listenSource_(std::make_shared<KdeListenSource>(helper_.listenSource(),
                                                      [kde = kde_] { return kde->isOffered(); })),
      shortcutSource_(std::make_shared<EitherShortcutSource>(helper_.shortcutSource(), kde_, listenSource_)) {
    const auto handled = [this] {
        if (onHandled) onHandled();
    };
    helper_.onHandled = handled;
    kde_->onHandled = handled;
    helper_.onModifierDown = [this] {
        if (onModifierDown) onModifierDown();
    };
}

// The engine may live a little longer.
KdeKeySession::~KdeKeySession() { kde_->onHandled = nullptr; }

std::string KdeKeySession::listeningFailure() const {
    std::string failure = helper_.listeningFailure();
    if (failure.empty() || listenSource_->hearsTaps()) return failure;
    return failure + " (until then KDE tells of combinations, whichever side their modifiers are on)";
}

} // namespace hopsel
