#include "model/observable_object.h"

#include <QPointer>
#include <memory>

namespace hopsel {

void ObservableObject::observe(QObject* context, std::function<void()> callback) {
    auto isWaiting = std::make_shared<bool>(false);
    connect(this, &ObservableObject::objectWillChange, context, [=, this, look = std::move(callback)] {
        if (std::exchange(*isWaiting, true)) return;
        QMetaObject::invokeMethod(
            context,
            [isWaiting, look, self = QPointer(this)] {
                *isWaiting = false;
                if (self) look();
            },
            Qt::QueuedConnection);
    });
}

} // namespace hopsel
