#include "app/model/observable_object.h"

#include <memory>

namespace hopsel {

void ObservableObject::observe(QObject* context, std::function<void()> callback) {
    auto isWaiting = std::make_shared<bool>(false);
    connect(this, &ObservableObject::objectWillChange, context, [=, look = std::move(callback)] {
        if (std::exchange(*isWaiting, true)) return;
        QMetaObject::invokeMethod(
            context,
            [isWaiting, look] {
                *isWaiting = false;
                look();
            },
            Qt::QueuedConnection);
    });
}

} // namespace hopsel
