#include "platform/linux/bus/bus_signal.h"

#include <utility>

namespace hopsel {

namespace {

bool fits(const QString& signature, const QString& wanted) {
    return wanted.endsWith(u'*') ? signature.startsWith(wanted.chopped(1)) : signature == wanted;
}

/// As messages name their sender.
bool isExact(const QString& sender) { return sender.startsWith(u':') || sender == u"org.freedesktop.DBus"; }

} // namespace

bool BusSignal::matches(const QDBusMessage& message) const {
    return message.type() == QDBusMessage::SignalMessage && message.interface() == interface &&
           message.member() == member && (!isExact(sender) || message.service() == sender) &&
           (path.isEmpty() || message.path() == path) && fits(message.signature(), signature) &&
           (firstArgument.isEmpty() || message.arguments().value(0).toString() == firstArgument);
}

QString BusSignal::rule() const {
    QString rule = QStringLiteral("type='signal'");
    const std::pair<const char*, const QString&> parts[] = {{"sender", sender},
                                                            {"path", path},
                                                            {"interface", interface},
                                                            {"member", member},
                                                            {"arg0", firstArgument}};
    for (const auto& [key, value] : parts)
        if (!value.isEmpty()) rule += u',' + QString::fromLatin1(key) + "='" + value + u'\'';
    return rule;
}

} // namespace hopsel
