// Starts other programs of the desktop, which then run on their own: nothing here waits for them or ends
// them. Functions without state.
#pragma once

#include <QString>
#include <QStringList>

namespace hopsel {

/// False when PATH has no such program, or it cannot be started.
bool startProgram(const QString& name, const QStringList& arguments);

/// Hands an address or a path to the user's preferred program for it; false when the desktop lacks the means.
bool openWithDesktop(const QString& address);

} // namespace hopsel
