// Where a message bus listens. Stateless.
//
// Nothing is taken from an address but the name of a local socket: the D-Bus library would also run programs
// for one, start a bus, or wait for a daemon that has no room. Spelled out here also because it reads the
// environment only once.
#pragma once

#include <QString>
#include <filesystem>

namespace hopsel::bus_address {

/// As the environment says now. Empty where there is none.
QString session();
QString system();

/// The first of the addresses that is a socket on this machine, with nothing but its place in it. Empty if
/// there is none.
QString local(const QString& addresses);

/// The file of such an address; empty for a socket that has none.
std::filesystem::path socketFile(const QString& localAddress);

/// Someone listens there and has room for another client. Never waits.
bool acceptsClients(const QString& localAddress);

} // namespace hopsel::bus_address
