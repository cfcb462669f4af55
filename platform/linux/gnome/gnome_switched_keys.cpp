#include "platform/linux/gnome/gnome_switched_keys.h"

#include "core/platform/tap_failure.h"

#include <utility>

namespace hopsel {

/// Whether anybody can switch.
struct GnomeSwitchedKeys::Switching {
    std::shared_ptr<GnomeExtension> extension;
    std::shared_ptr<LinuxInputSources> sources;

    /// Not while the extension may still say that it is there.
    bool isMissing() const { return !sources->canSwitch() && !extension->isAsked(); }
    std::string failure() const {
        if (extension->isBusy()) return "another copy of the program has GNOME's extension \"Hopsel\"";
        if (extension->isOurs()) return "this GNOME does not let its extension \"Hopsel\" switch";
        return "GNOME's extension \"Hopsel\" is not enabled";
    }
};

/// The X server's source, which cannot be started where nobody can switch.
class GnomeSwitchedKeys::Source final : public EventSource {
  public:
    Source(std::shared_ptr<EventSource> keys, std::shared_ptr<const Switching> switching)
        : keys_(std::move(keys)), switching_(std::move(switching)) {
        keys_->onEvent = [this](const RawEvent& event) {
            if (onEvent) onEvent(event);
        };
        keys_->onDisabled = [this](bool isBack) {
            if (onDisabled) onDisabled(isBack);
        };
    }
    ~Source() override {
        keys_->stop();
        keys_->onEvent = nullptr;
        keys_->onDisabled = nullptr;
    }

    void start() override {
        if (switching_->isMissing())
            throw TapFailure(TapFailure::Kind::creationFailed, switching_->failure());
        keys_->start();
        isStarted_ = true;
    }
    void stop() override {
        isStarted_ = false;
        keys_->stop();
    }
    void setTapTriggers(ModifierSet triggers) override { keys_->setTapTriggers(triggers); }
    bool canGuardTaps() const override { return keys_->canGuardTaps(); }

    void consider() {
        if (!isStarted_ || !switching_->isMissing()) return;
        stop();
        if (onDisabled) onDisabled(false);
    }

  private:
    std::shared_ptr<EventSource> keys_;
    std::shared_ptr<const Switching> switching_;
    bool isStarted_ = false;
};

class GnomeSwitchedKeys::Granted final : public Permissions {
  public:
    Granted(std::shared_ptr<Permissions> keys, std::shared_ptr<const Switching> switching)
        : keys_(std::move(keys)), switching_(std::move(switching)) {}

    bool accessibilityGranted() override { return keys_->accessibilityGranted(); }
    bool requestAccessibility() override { return keys_->requestAccessibility(); }
    bool inputMonitoringGranted() override {
        return !switching_->isMissing() && keys_->inputMonitoringGranted();
    }
    bool requestInputMonitoring() override {
        return !switching_->isMissing() && keys_->requestInputMonitoring();
    }

  private:
    std::shared_ptr<Permissions> keys_;
    std::shared_ptr<const Switching> switching_;
};

GnomeSwitchedKeys::GnomeSwitchedKeys(std::unique_ptr<KeySession> keys,
                                     const std::shared_ptr<BusLink>& sessionBus,
                                     std::shared_ptr<GnomeExtension> extension,
                                     std::shared_ptr<LinuxInputSources> sources)
    : keys_(std::move(keys)),
      sources_(std::move(sources)),
      switching_(std::make_shared<Switching>(Switching{extension, sources_})),
      source_(std::make_shared<Source>(keys_->listenSource(), switching_)),
      switch_(sessionBus) {
    keys_->onModifierDown = [this] {
        if (onModifierDown) onModifierDown();
    };
    keys_->onHandled = [this] {
        if (onHandled) onHandled();
    };
    sources_->onInChargeChanged = [this] { source_->consider(); };
    extension->observe(&context_, [this] { source_->consider(); });
}

GnomeSwitchedKeys::~GnomeSwitchedKeys() { sources_->onInChargeChanged = nullptr; }

std::shared_ptr<EventSource> GnomeSwitchedKeys::listenSource() { return source_; }

std::shared_ptr<Permissions> GnomeSwitchedKeys::permissions() {
    return std::make_shared<Granted>(keys_->permissions(), switching_);
}

std::string GnomeSwitchedKeys::listeningFailure() const {
    return switching_->isMissing() ? switching_->failure() : keys_->listeningFailure();
}

void GnomeSwitchedKeys::remedy(const QObject* context, const std::function<void(const WayOut&)>& otherwise) {
    if (!switching_->isMissing()) return keys_->remedy(context, otherwise);
    switch_.turnOn(context, [otherwise] { otherwise({}); });
}

} // namespace hopsel
