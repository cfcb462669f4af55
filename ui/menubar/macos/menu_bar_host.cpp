#include "ui/menubar/macos/menu_bar_host.h"

#include <QMetaObject>
#include <utility>

namespace hopsel {

void MenuBarHost::start(OnChange onChange) {
    QMetaObject::invokeMethod(
        &context_, [onChange = std::move(onChange)] { onChange(TrayKind::menuBar); }, Qt::QueuedConnection);
}

} // namespace hopsel
