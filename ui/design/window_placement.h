// Where a new window stands: in the middle of a screen, with its whole frame on it.
//
// What room the window manager's frame takes is known only once the window is shown; a window that fills a
// small screen would have its title bar above the edge, where it cannot be taken hold of. So room for one is
// kept beforehand. Pure but for the screen that is looked up.
#pragma once

#include <QMargins>
#include <QRect>
#include <QScreen>
#include <QSize>

namespace hopsel::design {

/// More than the title bar and edges of any usual theme, in points at the usual text size.
inline constexpr QMargins roomForFrame{8, 44, 8, 8};

/// The screen that the pointer is on, or the first one.
const QScreen& screenInUse();
/// What a window's content may fill of the screen.
QRect roomOn(const QScreen& screen);
/// The content's place in the middle of `room`: as large as wanted, as far as that goes.
QRect placed(QSize content, const QRect& room);

} // namespace hopsel::design
