#include "ui/design/window_placement.h"

#include "ui/design/text.h"

#include <QCursor>
#include <QGuiApplication>

namespace hopsel::design {

const QScreen& screenInUse() {
    const QScreen* pointed = QGuiApplication::screenAt(QCursor::pos());
    return *(pointed != nullptr ? pointed : QGuiApplication::primaryScreen());
}

QRect roomOn(const QScreen& screen) {
    const QMargins& frame = roomForFrame;
    return screen.availableGeometry().marginsRemoved(
        {frame.left(), scaled(frame.top()), frame.right(), frame.bottom()});
}

QRect placed(QSize content, const QRect& room) {
    QRect place({}, content.boundedTo(room.size()));
    place.moveCenter(room.center());
    return place;
}

} // namespace hopsel::design
