// The listening source of a GNOME session under Wayland: the shell hears, and tells what lone taps need.
//
// Shared by the engine and the key session, which hands it what the extension tells. While it is not yet
// known whether there is an extension it counts as started; it is reported as taken away as soon as there is
// none, which also happens with the lock screen.
#pragma once

#include "core/platform/event_source.h"
#include "platform/linux/gnome/gnome_extension.h"

#include <QObject>
#include <memory>
#include <string>

namespace hopsel {

class GnomeListenSource final : public EventSource {
  public:
    explicit GnomeListenSource(std::shared_ptr<GnomeExtension> extension);
    ~GnomeListenSource() override { stopListening(); }

    void start() override;
    void stop() override { stopListening(); }

    /// Something was pressed.
    void heard(const RawEvent& event) const;
    /// Key-ups may have been lost: no key is held.
    void startOver();
    /// Why the last start failed, in words for the user; empty after one that did not.
    const std::string& failure() const { return failure_; }

  private:
    void stopListening();
    void extensionChanged();
    void listen();
    void lost();

    std::shared_ptr<GnomeExtension> extension_;
    std::string failure_;
    bool isStarted_ = false;
    QObject context_; ///< answers end with it
};

} // namespace hopsel
