#include "platform/macos/desktop/sm_app_login_item.h"

#include "platform/macos/base/text_values.h"
#include "platform/macos/desktop/login_item_status.h"

#import <ServiceManagement/ServiceManagement.h>
#include <stdexcept>

namespace hopsel {

LoginItemStatus SMAppLoginItem::status() const {
    return loginItemStatus(SMAppService.mainAppService.status, wasTried_);
}

void SMAppLoginItem::setEnabled(bool on) {
    SMAppService* service = SMAppService.mainAppService;
    wasTried_ = wasTried_ || on;
    NSError* error = nil;
    const bool done =
        on ? [service registerAndReturnError:&error] : [service unregisterAndReturnError:&error];
    if (!done) throw std::runtime_error(textOf(error.localizedDescription).value_or("refused"));
}

} // namespace hopsel
