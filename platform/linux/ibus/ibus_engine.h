// What the IBus daemon says about its engines. Stateless.
//
// The descriptions come from files of any package and through any program that has taken the daemon's place:
// whatever arrives, what is made of it here is short, one line and valid UTF-8, or left out.
#pragma once

#include "platform/linux/xkb/xkb_groups.h"

#include <QDBusMessage>
#include <QString>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace hopsel {

struct IbusEngine {
    QString id;           ///< what the daemon calls it: "hangul", "xkb:us::eng"
    std::string name;     ///< localized; the id where there is none
    std::string language; ///< "ko"; may be empty
    XkbLayout layout;     ///< the keyboard layout it is made for; empty: it takes any
};

namespace ibus_engine {

/// More than anybody switches between; what there is beyond is left out.
inline constexpr std::size_t maxEngines = 64;

/// Fit to be stored in a rule, and to be sent.
bool isUsableID(const QString& id);

/// A layout as IBus writes it, also "us(dvorak)" in one; empty for "default" and for what can be none.
XkbLayout layout(const QString& told, const QString& variant = {});

/// From the reply to GetEnginesByNames. Absent if it is no such thing; what is wrong in it is left out.
std::optional<std::vector<IbusEngine>> described(const QDBusMessage& reply);

/// From the reply to reading the property GlobalEngine: the engine's id, empty where there is none. Absent if
/// whoever answers does not know the property.
std::optional<QString> globalEngine(const QDBusMessage& reply);

} // namespace ibus_engine

} // namespace hopsel
