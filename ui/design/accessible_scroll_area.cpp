#include "ui/design/accessible_scroll_area.h"

#include <QAccessibleWidget>
#include <QWidget>

namespace hopsel::design {

namespace {

QAccessibleInterface* describe(const QString& className, QObject* object) {
    auto* widget = qobject_cast<QWidget*>(object);
    if (widget == nullptr || className != QLatin1String("QScrollArea")) return nullptr;
    return new QAccessibleWidget(widget, QAccessible::Client); // the toolkit owns it from here
}

} // namespace

void describeScrollAreasSafely() { QAccessible::installFactory(describe); }

} // namespace hopsel::design
