// The listening source of a KDE session: the key helper's while there is one, and without it none that hears,
// so that combinations can go through KDE meanwhile.
//
// Shared by the engine and the key session. Looks for the helper every two seconds while it does without, and
// ends when it is there: the engine's next start takes it up.
#pragma once

#include "core/platform/event_source.h"

#include <QTimer>
#include <functional>
#include <memory>

namespace hopsel {

class KdeListenSource final : public EventSource {
  public:
    /// `canDoWithout`: whether combinations arrive without the helper.
    KdeListenSource(std::shared_ptr<EventSource> helper, std::function<bool()> canDoWithout);
    ~KdeListenSource() override;

    void start() override;
    void stop() override;
    bool hearsTaps() const override { return hears_; }

  private:
    void look();

    std::shared_ptr<EventSource> helper_;
    std::function<bool()> canDoWithout_;
    bool isStarted_ = false;
    bool hears_ = true;
    QTimer looking_;
};

} // namespace hopsel
