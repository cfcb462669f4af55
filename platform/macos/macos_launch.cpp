#include "platform/macos/macos_launch.h"

#include "platform/macos/applications/application.h"

#include <QByteArray>

namespace hopsel {

// The toolkit would make the program an ordinary one if it is started outside of its bundle.
MacosLaunch::MacosLaunch() { qputenv("QT_MAC_DISABLE_FOREGROUND_APPLICATION_TRANSFORM", "1"); }

void MacosLaunch::applicationMade() { application::becomeAccessory(); }

} // namespace hopsel
