// Values of every type that the message bus knows, alone and inside one another.
#pragma once

#include "support/played_object.h"

#include <QDBusObjectPath>
#include <QDBusSignature>
#include <QDBusUnixFileDescriptor>
#include <QDBusVariant>

namespace hopsel::test {

inline QVariant boxed(const QVariant& value) { return QVariant::fromValue(QDBusVariant(value)); }

/// What a message may carry; also several values, and none.
inline std::vector<QVariantList> everyType() {
    using Numbers = QMap<QString, int>;
    using Tree = QMap<QString, QVariantMap>;
    using Pair = Row<QString, QVariantMap>;
    qDBusRegisterMetaType<Numbers>();
    qDBusRegisterMetaType<QMap<int, QString>>();
    qDBusRegisterMetaType<Tree>();
    qDBusRegisterMetaType<QList<QList<int>>>();
    qDBusRegisterMetaType<Pair>();
    qDBusRegisterMetaType<QList<Pair>>();
    const QVariantMap map{{"Active", boxed(7)}, {"LockedHint", QStringList{"x"}}, {"activation-token", 1.5}};
    const std::vector<QVariant> plain{QVariant::fromValue(uchar(255)),
                                      true,
                                      QVariant::fromValue(short(-1)),
                                      QVariant::fromValue(ushort(65535)),
                                      -1,
                                      4294967295U,
                                      qlonglong(-1),
                                      qulonglong(-1),
                                      1e300,
                                      "focused",
                                      QString(100'000, u'x'),
                                      QVariant::fromValue(QDBusObjectPath("/x")),
                                      QVariant::fromValue(QDBusSignature("a{sv}")),
                                      QVariant::fromValue(QDBusUnixFileDescriptor(0)),
                                      QByteArray("\0\xFF", 2),
                                      QStringList{"a", ""},
                                      map,
                                      QVariant::fromValue(Numbers{{"a", 1}}),
                                      QVariant::fromValue(QMap<int, QString>{{1, "a"}}),
                                      QVariant::fromValue(Tree{{"a", map}}),
                                      QVariant::fromValue(QList<QList<int>>{{1}, {}}),
                                      QVariant::fromValue(Pair("a", map)),
                                      QVariant::fromValue(QList<Pair>{Pair("a", map), Pair("", map)})};
    std::vector<QVariantList> all{{}, {plain[9], map, QStringList{"Active"}}};
    for (const QVariant& value : plain) {
        all.push_back({value});
        all.push_back({boxed(value)});
        all.push_back({boxed(boxed(boxed(value)))});
        all.push_back({QVariantList{boxed(value), value}});
        all.push_back({"focused", value, value});
        all.push_back({"org.freedesktop.appearance", "color-scheme", boxed(value)});
        all.push_back({"org.freedesktop.login1.Session",
                       QVariantMap{{"Active", value}, {"LockedHint", value}}, QStringList()});
    }
    return all;
}

} // namespace hopsel::test
