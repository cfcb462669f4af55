#include "app/accessible_application.h"

#include <QAccessible>
#include <QAccessibleObject>
#include <QApplication>
#include <QWidget>

namespace hopsel {

namespace {

class AccessibleApplication final : public QAccessibleObject {
  public:
    using QAccessibleObject::QAccessibleObject;

    QAccessibleInterface* parent() const override { return nullptr; }
    int childCount() const override { return static_cast<int>(windows().size()); }
    QAccessibleInterface* child(int index) const override {
        return QAccessible::queryAccessibleInterface(windows().value(index));
    }
    int indexOfChild(const QAccessibleInterface* child) const override {
        return static_cast<int>(windows().indexOf(qobject_cast<QWidget*>(child->object())));
    }
    QAccessibleInterface* focusChild() const override {
        QWidget* const focused = QApplication::focusWidget();
        return focused != nullptr ? QAccessible::queryAccessibleInterface(focused) : nullptr;
    }
    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name ? QGuiApplication::applicationDisplayName() : QString();
    }
    QAccessible::Role role() const override { return QAccessible::Application; }
    QAccessible::State state() const override { return {}; }

  private:
    static QWidgetList windows() {
        QWidgetList found;
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            const Qt::WindowType type = widget->windowType();
            if (type != Qt::Popup && type != Qt::Desktop) found.append(widget);
        }
        return found;
    }
};

QAccessibleInterface* describe(const QString& className, QObject* object) {
    if (className != QLatin1String("QApplication")) return nullptr;
    return new AccessibleApplication(object); // the toolkit owns it from here
}

} // namespace

void describeApplicationToScreenReaders() { QAccessible::installFactory(describe); }

} // namespace hopsel
