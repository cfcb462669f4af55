#include "platform/linux/fcitx/fcitx_rig.h"

namespace hopsel::test {

QDBusConnection FcitxRig::connect() {
    static int count = 0;
    return QDBusConnection::connectToBus(QString::fromStdString(session.bus().address()),
                                         "fcitx test " + QString::number(++count));
}

} // namespace hopsel::test
