// A signal on a message bus that somebody wants to hear, and from whom.
//
// Any program may send any signal with anything in it, so whoever listens says what it must look like. A
// value; the functions are pure.
#pragma once

#include <QDBusMessage>
#include <QString>

namespace hopsel {

struct BusSignal {
    QString sender; ///< its unique name, or the bus itself; empty: anyone, for what is only a reason to look
    QString path;   ///< empty: any
    QString interface;     ///< never empty
    QString member;        ///< never empty
    QString signature;     ///< "sii*": begins so
    QString firstArgument; ///< empty: any

    /// Who owns a well-known name, the bus alone can tell: that is for `BusName` to see to.
    bool matches(const QDBusMessage& message) const;
    /// What the bus is asked to deliver.
    QString rule() const;
};

} // namespace hopsel
