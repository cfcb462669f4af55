// Where the private bus of the running IBus daemon listens. Stateless.
//
// The daemon writes the address into a file that outlives it when it crashes and that is there before it is
// complete, so only a connection proves anything. Nothing is taken from it but the name of a local socket:
// the D-Bus library would also run programs for an address.
#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

namespace hopsel::ibus_address {

/// From the environment, else from the daemon's file for this display. Absent where there is none.
std::optional<QString> current();

/// The address in the text of such a file.
std::optional<QString> inFile(const QByteArray& text);

} // namespace hopsel::ibus_address
