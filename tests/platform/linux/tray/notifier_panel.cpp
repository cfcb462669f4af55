// A panel for tests that shows items described over D-Bus: watcher and host in one process, as in most
// desktops.
//
// It draws nothing; it prints "ready", and "item <service>" for each item that registers. With the argument
// "without-host" it is only the watcher, until somebody calls RegisterStatusNotifierHost.
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusContext>
#include <QStringList>
#include <iostream>

class Watcher final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    // The toolkit looks a property up in the introspection before it asks for it.
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hasHost)
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems READ items)
    Q_PROPERTY(int ProtocolVersion READ version)

  public:
    explicit Watcher(bool hasHost) : hasHost_(hasHost) {}
    bool hasHost() const { return hasHost_; }
    QStringList items() const { return items_; }
    int version() const { return 0; }

  public Q_SLOTS:
    // NOLINTBEGIN(readability-identifier-naming): the interface's names
    void RegisterStatusNotifierItem(const QString& service) {
        items_.push_back(service);
        std::cout << "item " << service.toStdString() << '\n' << std::flush;
        Q_EMIT StatusNotifierItemRegistered(service);
    }
    void RegisterStatusNotifierHost(const QString& /*service*/) {
        hasHost_ = true;
        Q_EMIT StatusNotifierHostRegistered();
    }

  Q_SIGNALS:
    void StatusNotifierItemRegistered(const QString& service);
    void StatusNotifierHostRegistered();
    // NOLINTEND(readability-identifier-naming)

  private:
    bool hasHost_;
    QStringList items_;
};

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    Watcher watcher(!QCoreApplication::arguments().contains("without-host"));
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.registerObject("/StatusNotifierWatcher", &watcher, QDBusConnection::ExportAllContents) ||
        !bus.registerService("org.kde.StatusNotifierWatcher"))
        return 1;
    std::cout << "ready" << '\n' << std::flush;
    return QCoreApplication::exec();
}

#include "notifier_panel.moc"
