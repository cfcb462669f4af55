#include "platform/macos/menu_bar/menu_bar_host.h"

#include "platform/macos/menu_bar/menu_bar_item.h"
#include "ui/menubar/status_menu.h"

#include <QMetaObject>
#include <utility>

namespace hopsel {

void MenuBarHost::start(OnChange onChange) {
    QMetaObject::invokeMethod(
        &context_, [onChange = std::move(onChange)] { onChange(TrayKind::menuBar); }, Qt::QueuedConnection);
}

std::unique_ptr<PanelItem> MenuBarHost::makeItem(TrayKind /*kind*/, StatusMenu& menu) {
    menu.showLabels(); // ahead of the system's menu, which is made of what is there
    return std::make_unique<MenuBarItem>(makeStatusBarItem((__bridge void*)menu.toNSMenu()));
}

} // namespace hopsel
