// The keyboard layouts of the X server as input sources: what a session without an input method has.
//
// One source for each group of the server's keymap. Made by start-up and shared with the input-source
// service; needs the event loop, through which it learns of changes on a connection of its own. It survives
// the loss of that connection: the owner calls `reconnect`. It tells of a change only if the value is another
// in the end.
#pragma once

#include "core/platform/input_source_service.h"
#include "platform/linux/base/coalescing_timer.h"
#include "platform/linux/xkb/xkb_layout_registry.h"
#include "platform/linux/xkb/xkb_server.h"

#include <QObject>
#include <QSocketNotifier>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace hopsel {

class XkbInputSources final : public InputSourceCatalog {
  public:
    /// Throws `std::runtime_error` if there is no X server with the keyboard extension.
    XkbInputSources();

    /// While the connection is lost, those that were listed last. The first call reads the layout registry.
    std::vector<InputSourceInfo> enabledKeyboardSources() override;
    /// From memory, without asking the server. Absent while the connection is lost.
    std::optional<std::string> currentID() override;
    /// `Failed` has a code of platform_errors.h.
    SelectResult select(const std::string& id) override;
    bool hasBeenCurrent() const override { return server_ && server_->hasBeenLocked(); }

    bool isLost() const { return !server_ || server_->isLost(); }
    /// True if there is a connection afterwards. What changed meanwhile is reported like any change.
    bool reconnect();

    /// Called from the event loop.
    std::function<void()> onLost;

  private:
    void connect();
    void takeEvents();
    void readGroups();
    void noteLoss();
    void reportSources();
    void reportSelected();

    XkbLayoutRegistry registry_;
    std::unique_ptr<XkbServer> server_;
    std::unique_ptr<QSocketNotifier> notifier_; ///< on the server's descriptor, so destroyed before it
    std::vector<XkbGroup> groups_;
    bool areGroupsStale_ = true;
    std::vector<XkbGroup> reportedGroups_;
    std::optional<std::string> reportedID_;
    CoalescingTimer sourcesTimer_;
    CoalescingTimer selectedTimer_;
    CoalescingTimer lossTimer_;
};

} // namespace hopsel
