// The filtering source of an X session, over the key hook that it shares.
//
// Owned by the engine; the hook and the log outlive it. Runs only while the listening source does. A
// combination that another program holds is a failure as a whole: a filter that works for some rules and
// silently not for others would be worse. Each distinct failure is logged once.
#pragma once

#include "core/platform/shortcut_source.h"
#include "core/platform/tap_failure.h"
#include "platform/linux/x11/x11_key_hook.h"

namespace hopsel {

class X11ShortcutSource final : public ShortcutSource {
  public:
    X11ShortcutSource(std::shared_ptr<X11KeyHook> hook, Log& log) : hook_(std::move(hook)), failures_(log) {}
    ~X11ShortcutSource() override { stopFiltering(); }

    void start() override;
    void stop() override { stopFiltering(); }
    void setShortcuts(const ShortcutSet& shortcuts) override;

  private:
    void stopFiltering();
    void taken();

    std::shared_ptr<X11KeyHook> hook_;
    TapFailureLog failures_;
    ShortcutSet shortcuts_;
    bool isStarted_ = false;
};

} // namespace hopsel
