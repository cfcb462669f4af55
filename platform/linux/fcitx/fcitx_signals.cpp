#include "platform/linux/fcitx/fcitx_signals.h"

#include "platform/linux/bus/bus_call.h"

#include <utility>

namespace hopsel {

namespace {

using namespace std::chrono_literals;

constexpr auto quiet = 2ms, atMost = 20ms;
constexpr qsizetype mostIcons = 1000;

} // namespace

FcitxSignals::FcitxSignals(std::shared_ptr<BusLink> bus, const QString& owner)
    : bus_(std::move(bus)),
      shownTimer_(quiet, atMost,
                  [this] {
                      if (onMethodShown) onMethodShown();
                  }),
      // Fcitx5 declares it, but up to 5.0 never sends it.
      groups_(bus_, {owner, "/controller", "org.fcitx.Fcitx.Controller1", "InputMethodGroupsChanged", "", ""},
              [this](const QDBusMessage&) {
                  if (onGroupsChanged) onGroupsChanged();
              }),
      panel_(bus_, {owner, "/kimpanel", "org.kde.kimpanel.inputmethod", "UpdateProperty", "s", ""},
             [this](const QDBusMessage&) { shownTimer_.noteChange(); }) {
    listenTo(QString());
    askProcess(owner, [this](unsigned process) { process_ = process; });
}

void FcitxSignals::iconChanged(const QString& sender) {
    if (sender == icon_) return shownTimer_.noteChange();
    if (!icon_.isEmpty() || otherIcons_.contains(sender) || otherIcons_.size() >= mostIcons) return;
    askProcess(sender, [this, sender](unsigned process) {
        // The bus answers in order, so Fcitx5's own process is known by now.
        if (process == 0) return; // asked again at its next sign
        if (process != process_) {
            otherIcons_.insert(sender);
            return;
        }
        listenTo(sender);
        shownTimer_.noteChange();
    });
}

// To its sender alone, once that is known: other programs' icons may move all the time, and would wake us
// each time.
void FcitxSignals::listenTo(const QString& icon) {
    icon_ = icon;
    otherIcons_.clear();
    iconOwner_.reset();
    if (!icon_.isEmpty())
        iconOwner_ = std::make_unique<BusName>(bus_, icon_, [this] {
            if (!iconOwner_->isOwned()) listenTo(QString());
        });
    icons_ = std::make_unique<BusSubscription>(
        bus_, BusSignal{icon_, "/StatusNotifierItem", "org.kde.StatusNotifierItem", "NewIcon", "", ""},
        [this](const QDBusMessage& signal) { iconChanged(signal.service()); });
}

void FcitxSignals::askProcess(const QString& name, std::function<void(unsigned)> onAnswer) {
    bus_->call(bus_call::toBus("GetConnectionUnixProcessID", {name}), &context_,
               [onAnswer = std::move(onAnswer)](const QDBusMessage& reply) {
                   onAnswer(bus_call::numberIn(reply).value_or(0));
               });
}

} // namespace hopsel
