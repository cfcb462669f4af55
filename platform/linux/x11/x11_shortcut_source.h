// The filtering source of an X session, over the key hook that it shares.
//
// Owned by the engine; the hook and the log outlive it. Runs only while the listening source does. Each
// combination goes by itself: those that another program holds are told, tried for every second, and taken as
// soon as they are free. Only if it can have none at all does it fail. Each distinct failure is logged once.
#pragma once

#include "core/platform/shortcut_source.h"
#include "core/platform/tap_failure.h"
#include "platform/linux/x11/x11_key_hook.h"

#include <QTimer>

namespace hopsel {

class X11ShortcutSource final : public ShortcutSource {
  public:
    X11ShortcutSource(std::shared_ptr<X11KeyHook> hook, Log& log);
    ~X11ShortcutSource() override { stopFiltering(); }

    void start() override;
    void stop() override { stopFiltering(); }
    void setShortcuts(const ShortcutSet& shortcuts) override;
    ShortcutSet unavailableShortcuts() const override { return hook_->takenShortcuts(); }

  private:
    void stopFiltering();
    void lost();
    void tellTaken();

    std::shared_ptr<X11KeyHook> hook_;
    TapFailureLog failures_;
    ShortcutSet shortcuts_;
    bool isStarted_ = false;
    QTimer retryTimer_; ///< runs only while another program has one of ours
};

} // namespace hopsel
