// The filtering source of a GNOME session under Wayland: the shell swallows the combinations that it is
// given, exactly those, and tells of each.
//
// Shared by the engine and the key session, which hands it what the extension tells. The shell cannot wait
// for an answer, so it has the set beforehand; while the engine stands aside that set is empty. Combinations
// that GNOME holds itself are told, and tried for again every other second.
#pragma once

#include "core/platform/shortcut_source.h"
#include "core/platform/tap_failure.h"
#include "platform/linux/gnome/gnome_extension.h"

#include <QObject>
#include <QTimer>
#include <memory>
#include <vector>

namespace hopsel {

class GnomeShortcutSource final : public ShortcutSource {
  public:
    GnomeShortcutSource(std::shared_ptr<GnomeExtension> extension, Log& log);
    ~GnomeShortcutSource() override { stopFiltering(); }

    void start() override;
    void stop() override { stopFiltering(); }
    void setShortcuts(const ShortcutSet& shortcuts) override;
    void setStandsAside(bool standsAside) override;
    ShortcutSet unavailableShortcuts() const override { return taken_; }

    /// The shell has kept the press or the release of a key, by the kernel's number, from everybody else.
    /// False where the engine would have let it pass.
    bool swallowed(unsigned key, std::uint64_t flags, bool isPress) const;

  private:
    void stopFiltering();
    void extensionChanged();
    void send();
    void takeAnswer(const QDBusMessage& reply, const std::vector<ShortcutKey>& asked);
    void setTaken(ShortcutSet taken);
    void lost(const std::string& reason);

    std::shared_ptr<GnomeExtension> extension_;
    TapFailureLog failures_;
    ShortcutSet shortcuts_;
    ShortcutSet taken_;
    bool isStarted_ = false;
    bool standsAside_ = false;
    unsigned sendCount_ = 0; ///< only the last answer counts
    QTimer retryTimer_;      ///< runs only while GNOME has one of ours
    QObject context_;        ///< answers end with it
};

} // namespace hopsel
