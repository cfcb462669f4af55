#include "ui/design/accessible_roles.h"

#include <QAbstractButton>
#include <QAccessibleWidget>
#include <QLabel>
#include <QVariant>

namespace hopsel::design {

namespace {

constexpr const char* property = "accessibleRole";

class Described final : public QAccessibleWidget {
  public:
    Described(QWidget* widget, QAccessible::Role role) : QAccessibleWidget(widget, role) {}

    QString text(QAccessible::Text kind) const override {
        QString given = QAccessibleWidget::text(kind);
        if (kind != QAccessible::Name || !given.isEmpty()) return given;
        if (const auto* label = qobject_cast<const QLabel*>(widget())) return label->text();
        return button() != nullptr ? button()->text() : given;
    }
    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        if (role() == QAccessible::Dialog && !widget()->isWindow()) state.modal = true;
        if (button() != nullptr) {
            state.selectable = true;
            state.selected = button()->isChecked();
        }
        return state;
    }
    QStringList actionNames() const override {
        return (button() != nullptr ? QStringList{pressAction()} : QStringList()) +
               QAccessibleWidget::actionNames();
    }
    void doAction(const QString& name) override {
        if (name == pressAction() && button() != nullptr)
            button()->click();
        else
            QAccessibleWidget::doAction(name);
    }

  private:
    QAbstractButton* button() const { return qobject_cast<QAbstractButton*>(widget()); }
};

QAccessibleInterface* describe(const QString& /*className*/, QObject* object) {
    auto* widget = qobject_cast<QWidget*>(object);
    if (widget == nullptr) return nullptr;
    const QVariant role = widget->property(property);
    return role.isValid() ? new Described(widget, QAccessible::Role(role.toInt())) : nullptr;
}

} // namespace

void setAccessibleRole(QWidget* widget, QAccessible::Role role) { widget->setProperty(property, int(role)); }

void describeRoles() { QAccessible::installFactory(describe); }

} // namespace hopsel::design
