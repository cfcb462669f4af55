// Services that a test plays on a private bus: an object that answers as it is told to, and a Fcitx5 made of
// one that answers well until it is told otherwise.
#pragma once

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QList>
#include <QString>
#include <functional>
#include <map>

namespace hopsel::test {

struct GroupMember {
    QString method, layout;
};
struct AvailableMethod {
    QString method, name, nativeName, icon, label, language;
    bool isConfigurable = false;
};
using GroupMembers = QList<GroupMember>;
using AvailableMethods = QList<AvailableMethod>;

using Answer = std::function<void(const QDBusMessage& call, const QDBusConnection& bus)>;
Answer replyWith(const QVariantList& arguments);
Answer replyWithError();

class PlayedObject : public QDBusVirtualObject {
  public:
    PlayedObject(const QDBusConnection& bus, const QString& name, const QString& path);
    ~PlayedObject() override;

    std::map<QString, Answer> answers; ///< by method; an error where there is none
    std::map<QString, int> calls;

    void appear() { bus_.registerService(name_); }
    void disappear() { bus_.unregisterService(name_); }

    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& call, const QDBusConnection& bus) override;

  private:
    QDBusConnection bus_;
    QString name_;
    QString path_;
};

class PlayedFcitx : public PlayedObject {
  public:
    explicit PlayedFcitx(const QDBusConnection& bus);
    /// Answers what is right from here on.
    void behave();

    QString current = "keyboard-us"; ///< empty: there is no text field
    GroupMembers members{{"keyboard-us", ""}, {"hangul", ""}};
};

} // namespace hopsel::test

Q_DECLARE_METATYPE(hopsel::test::GroupMember)
Q_DECLARE_METATYPE(hopsel::test::AvailableMethod)
