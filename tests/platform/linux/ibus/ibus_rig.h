// An X server, a session with IBus, and the framework under test on its bus.
#pragma once

#include "platform/linux/ibus/ibus_input_sources.h"
#include "session/ibus_session.h"
#include "session/x_server.h"
#include "support/bus_links.h"
#include "support/fakes/engine_fakes.h"

#include <memory>

namespace hopsel::test {

class IbusRig : public session::XServer, public session::IbusSession {
  public:
    const std::shared_ptr<BusLink>& bus() const { return link_; }
    /// A new framework on this session's bus, without waiting for it.
    std::shared_ptr<IbusInputSources> makeSources() { return std::make_shared<IbusInputSources>(link_, log); }
    /// Lets the framework retry, as the program does every so often, until it is in charge or no longer.
    static bool become(bool isInCharge, IbusInputSources& sources);

    fakes::RecordingLog log;

  private:
    std::shared_ptr<BusLink> link_ = linkTo(busAddress());
};

} // namespace hopsel::test
