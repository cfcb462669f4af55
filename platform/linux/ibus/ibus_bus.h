// The connection to the private bus of the IBus daemon: it can be lost, and opened again.
//
// A member of the framework, which says when to open it. Nothing here waits.
#pragma once

#include "platform/linux/bus/bus_name.h"

namespace hopsel {

class IbusBus final {
  public:
    /// All are called from the event loop.
    struct Callbacks {
        std::function<void()> onReady;
        std::function<void()> onLost;
        std::function<void(const QString& engine)> onEngineChanged;
        std::function<void()> onRegistryChanged;
    };

    explicit IbusBus(Callbacks callbacks);

    /// Where the daemon says that it listens. Does nothing while it is open: one that hangs is waited for.
    void open() { link_->retry(); }
    /// Tells nobody.
    void close();
    /// Open, or being opened.
    bool isOpen() const { return link_->isOpen(); }
    bool isConnected() const { return link_->isConnected(); }

    /// `onAnswer` gets the reply or the error; it is never called once the bus is closed.
    void call(const char* method, const QVariantList& arguments, BusLink::Answer onAnswer);
    void readProperty(const char* name, BusLink::Answer onAnswer);

  private:
    std::shared_ptr<BusLink> link_;
    BusName daemon_; ///< on its own bus
    bool isClosing_ = false;
    QObject context_; ///< answers end with it
};

} // namespace hopsel
