// The input methods of Fcitx5's current group, as it told them last.
//
// Owned by the input sources, who say when to ask. An answer that cannot be used leaves what was told before.
#pragma once

#include "core/platform/input_source.h"
#include "platform/linux/fcitx/fcitx_daemon.h"

#include <QStringList>
#include <memory>
#include <optional>
#include <vector>

namespace hopsel {

class FcitxSourceList {
  public:
    FcitxSourceList(FcitxDaemon& daemon, std::function<void()> onTold)
        : daemon_(daemon), onTold_(std::move(onTold)) {}

    bool isTold() const { return isTold_; }
    /// In the group's order.
    const std::vector<InputSourceInfo>& sources() const { return sources_; }

    /// Asks for everything. What is being asked already counts no more.
    void ask();
    /// Asks which group is current, and for everything only if the list is of another.
    void check();
    void forget();

  private:
    void takeGroup(const std::optional<QString>& group);
    void takeParts();

    FcitxDaemon& daemon_;
    std::function<void()> onTold_;
    bool isTold_ = false;
    QString group_;
    std::vector<InputSourceInfo> sources_;

    std::unique_ptr<QObject> round_; ///< while everything is being asked
    QString roundGroup_;
    std::optional<QDBusMessage> members_;
    std::optional<QDBusMessage> available_;
};

} // namespace hopsel
