// What Fcitx5's replies say, read with suspicion: the name on the bus may belong to anyone.
//
// Each function answers nothing for an error, for another signature than the documented one and for values
// that cannot be used. Pure functions of the messages.
#pragma once

#include "core/platform/input_source.h"

#include <QDBusMessage>
#include <QString>
#include <QStringList>
#include <optional>
#include <string>
#include <vector>

namespace hopsel::fcitx {

/// The identifier of the input method with Fcitx5's unique name.
std::string sourceID(const QString& method);
/// The unique name in the identifier.
QString methodIn(const std::string& id);

/// From `CurrentInputMethodGroup` and `CurrentInputMethod`; may be empty.
std::optional<QString> textIn(const QDBusMessage& reply);

/// From `State`.
std::optional<int> numberIn(const QDBusMessage& reply);

/// From `InputMethodGroupInfo`: the unique names in their order, each once, nameless ones left out, and no
/// more of them than a person could want.
std::optional<QStringList> membersIn(const QDBusMessage& reply);

/// The members as sources, named as `AvailableInputMethods` says; one that it does not know has its unique
/// name for a name.
std::optional<std::vector<InputSourceInfo>> sourcesIn(const QDBusMessage& available,
                                                      const QStringList& members);

} // namespace hopsel::fcitx
