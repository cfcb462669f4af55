// Combinations through KDE's own global shortcuts: KDE keeps them from every program and tells when one is
// pressed and released. Needs no rights; sides are not told apart, and a key alone is no combination.
//
// Shared by the engine and the key session; the log outlives it. What is registered is kept in the user's
// configuration by KDE, so it is taken back when this stops; what a crash has left, the next start takes
// back.
#pragma once

#include "core/platform/shortcut_source.h"
#include "core/platform/tap_failure.h"
#include "platform/linux/bus/bus_name.h"

#include <QTimer>
#include <map>
#include <memory>
#include <string>

namespace hopsel {

class KdeShortcutSource final : public ShortcutSource {
  public:
    KdeShortcutSource(std::shared_ptr<BusLink> sessionBus, Log& log);
    ~KdeShortcutSource() override { stopFiltering(); }

    /// KDE's service for shortcuts is there.
    bool isOffered() const { return service_.isOwned(); }

    void start() override;
    void stop() override { stopFiltering(); }
    void setShortcuts(const ShortcutSet& shortcuts) override;
    void setStandsAside(bool standsAside) override;
    /// Those that somebody else has, and those that KDE cannot tell from another or not at all.
    ShortcutSet unavailableShortcuts() const override;

    /// After each press and release, outside `onInput`.
    std::function<void()> onHandled;

  private:
    struct Registered {
        ShortcutKey combination;
        bool isTaken = false; ///< by somebody else; tried for again
        bool isDown = false;
    };
    /// By the number that KDE has for it.
    using Wanted = std::map<int, ShortcutKey>;

    Wanted wanted() const;
    void synchronise();
    void add(int number, const ShortcutKey& combination);
    void ask(int number);
    void takeAnswer(int number, const QDBusMessage& reply);
    void remove(const std::string& action);
    void takeLeftOvers(const QDBusMessage& reply);
    void heard(const QDBusMessage& signal, bool isPress);
    void stopFiltering();
    void lost();
    void tellUnavailable() const;

    TapFailureLog failures_;
    ShortcutSet shortcuts_;
    std::map<int, Registered> registered_;
    bool isStarted_ = false;
    bool standsAside_ = false;
    QTimer retryTimer_; ///< runs only while somebody else has one of ours
    BusName service_;
    QObject context_; ///< answers end with it
};

} // namespace hopsel
